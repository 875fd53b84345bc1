#include "books/TradingDesk.h"

#include "books/Settlement.h"
#include "exchange/Exchange.h"
#include "exchange/Random.h"

#include <algorithm>

namespace sim {

namespace {

constexpr quint64 kDelays = 0xde1a; // separates the desk's random numbers from those of the market

const QString kHalted = QStringLiteral("证券停牌，不能委托");

/// Why an order cannot be cancelled; empty when it can.
QString whyNotCancellable(OrderStatus status)
{
    switch (status) {
    case OrderStatus::Filled:
        return QStringLiteral("委托已全部成交，不能撤单");
    case OrderStatus::Cancelled:
    case OrderStatus::PartlyCancelled:
        return QStringLiteral("委托已撤单");
    case OrderStatus::Rejected:
        return QStringLiteral("废单不能撤单");
    case OrderStatus::ToBeCancelled:
        return QStringLiteral("委托正在撤单");
    case OrderStatus::ToBeSent:
    case OrderStatus::Sent:
    case OrderStatus::Reported:
    case OrderStatus::PartlyFilled:
        break;
    }
    return {};
}

} // namespace

TradingDesk::TradingDesk(const Accounts &accounts, const QString &orderIdPrefix, const Exchange &exchange, quint64 seed,
                         const QDateTime &start, Listener listener, const OpeningTerms &opening,
                         const OrderDelays &delays, const Divides &divides)
    : m_exchange(exchange)
    , m_listener(std::move(listener))
    , m_books(accounts, orderIdPrefix)
    , m_messages(delays, random::subkey(random::scramble(seed), kDelays))
    , m_now(start)
    , m_step(exchange.stepAt(start))
{
    openBooks(m_books, exchange, seed, start, opening);
    if (Exchange::phase(m_step) == Phase::Settlement) { // nobody need be told: it was before the start
        settleDay();
        m_touched.clear();
        m_events.clear();
    }
    if (divides)
        m_divides = [divides, first = int(m_books.orders().size())](int order) { return order >= first && divides(); };
    for (int number = 0; number < int(m_books.orders().size()); ++number) {
        if (orderAt(number).isOpen())
            m_matching.add(number, orderAt(number), exchange, m_step);
    }
}

void TradingDesk::addOrdersTo(Quote &quote) const
{
    const Instrument *instrument = m_exchange.instrument(quote.symbol);
    const std::lock_guard lock(m_mutex);
    if (instrument)
        m_matching.addTo(quote, *instrument);
}

std::optional<QDateTime> TradingDesk::nextMessage() const
{
    const std::lock_guard lock(m_mutex);
    return m_messages.next();
}

std::optional<Ledger> TradingDesk::ledger(const QString &tradingAccount) const
{
    const Reader books = read();
    const Ledger *ledger = books->ledger(tradingAccount);
    if (!ledger)
        return std::nullopt;
    Ledger copy = *ledger;
    copy.detach();
    return copy;
}

std::optional<Order> TradingDesk::order(const QString &id) const
{
    const Reader books = read();
    const int number = books->orderNumber(id);
    return number < 0 ? std::nullopt : std::make_optional(books->order(number));
}

std::vector<Order> TradingDesk::place(const std::vector<Order> &orders, const QDateTime &now)
{
    std::vector<Order> entered;
    entered.reserve(orders.size());
    {
        const std::lock_guard lock(m_mutex);
        playAll(now);

        // New orders change only the frozen money of an account: its positions are valued once.
        const Prices prices = [this](const QString &symbol) {
            return m_exchange.lastPrice(symbol, m_step).value_or(0);
        };
        QHash<QString, Money> withFrozen; // the available money, by trading account
        std::vector<int> sent;
        for (const Order &order : orders) {
            const Ledger &ledger = *m_books.ledger(order.tradingAccount);
            if (!withFrozen.contains(order.tradingAccount))
                withFrozen.insert(order.tradingAccount, ledger.value(prices).available + ledger.frozenCash());
            enter(order, withFrozen[order.tradingAccount] - ledger.frozenCash(), order.remark, sent);
            entered.push_back(m_books.orders().back());
        }
        reportTouched();
        if (!sent.empty())
            m_messages.sendOrders(sent, m_now);
        playAll(m_now); // without delays the orders are there
    }
    report();
    return entered;
}

void TradingDesk::enter(const Order &order, Money available, const QString &refusal, std::vector<int> &sent)
{
    Order entered = order;
    entered.entered = m_now;
    const QString &symbol = order.instrument->symbol;
    const QString reason = m_exchange.isHalted(symbol, m_step + 1) ? kHalted : refusal;
    const int number = m_books.enter(entered, available, m_exchange.limits(symbol, m_step), reason);
    const Order &asEntered = orderAt(number);
    if (asEntered.isOpen()) {
        sent.push_back(number);
        touch(asEntered, false);
    }
    note(OrderEntered{asEntered});
}

QStringList TradingDesk::cancel(const std::vector<CancelRequest> &requests, const QDateTime &now)
{
    QStringList reasons;
    {
        const std::lock_guard lock(m_mutex);
        playAll(now);
        std::vector<int> sent;
        bool areAtExchange = true;
        for (const CancelRequest &request : requests) {
            reasons.append(whyNotCancelled(request));
            if (!reasons.last().isEmpty())
                continue;
            const int number = m_books.orderNumber(request.orderId);
            m_books.requestCancel(number, m_now);
            noteChange(number);
            areAtExchange = areAtExchange && orderAt(number).isAtExchange();
            if (request.comesTooLate)
                m_filledBeforeCancel.insert(number);
            sent.push_back(number);
        }
        if (!sent.empty())
            m_messages.sendCancels(sent, areAtExchange, m_now);
        playAll(m_now);
    }
    report();
    return reasons;
}

QString TradingDesk::whyNotCancelled(const CancelRequest &request) const
{
    const int number = m_books.orderNumber(request.orderId);
    if (number < 0)
        return QStringLiteral("委托不存在");
    if (orderAt(number).tradingAccount != request.tradingAccount)
        return QStringLiteral("交易账号与委托不符");
    return whyNotCancellable(orderAt(number).status);
}

void TradingDesk::advance(const QDateTime &now)
{
    for (bool isMore = true; isMore;) {
        {
            const std::lock_guard lock(m_mutex); // released after each step, so that no caller waits for a whole day
            isMore = playNext(now);
            if (!isMore)
                moveClock(now);
        }
        report();
    }
}

void TradingDesk::moveClock(const QDateTime &now)
{
    m_now = qMax(m_now, now);
}

void TradingDesk::playAll(const QDateTime &now)
{
    while (playNext(now)) {
    }
    moveClock(now); // not before: what is played has times of its own
}

bool TradingDesk::playNext(const QDateTime &now)
{
    // At one time the step comes first: an order can fill in the steps after its acceptance, and up to its cancel.
    const std::optional<QDateTime> message = m_messages.next();
    const bool isMessageDue = message && *message <= now;
    const qint64 lastStep = m_exchange.stepAt(isMessageDue ? *message : now);
    if (m_matching.isEmpty())
        m_step = qMax(m_step, qMin(lastStep, steps::nextOfBooks(m_step) - 1));
    if (m_step < lastStep)
        playStep();
    else if (isMessageDue)
        playMessage();
    else
        return false;
    reportTouched();
    return true;
}

void TradingDesk::playStep()
{
    ++m_step;
    moveClock(m_exchange.timeOfStep(m_step));
    const Phase phase = Exchange::phase(m_step);
    if (phase == Phase::DayBegins)
        beginDay();
    else if (phase == Phase::Settlement)
        settleDay();
    const Matching::Outcome outcome = m_matching.play(m_exchange, m_step, m_divides);
    for (const Matching::Fill &one : outcome.fills)
        fill(one);
    for (const int number : outcome.expired) {
        m_books.cancel(number, m_now, QStringLiteral("对手方数量不足，市价委托剩余部分撤销"));
        noteChange(number);
        touch(orderAt(number), false);
    }
}

void TradingDesk::settleDay()
{
    for (const int number : settlement::expiringOrders(m_books, m_exchange, m_step))
        cancelByBroker(number, QStringLiteral("当日有效，收市后失效"));
    settlement::settle(m_books, m_exchange, m_step);
    m_touched.clear(); // every position that there still is
    for (const FundAccount &fund : m_books.accounts().fundAccounts(AllFunds)) {
        for (const QString &account : fund.tradingAccounts) {
            const QList<PositionKey> keys = m_books.ledger(account)->positions().keys();
            m_touched[account] = QSet<PositionKey>(keys.begin(), keys.end());
        }
    }
}

void TradingDesk::beginDay()
{
    settlement::forgetPastDays(m_books, m_exchange, m_step);
    note(DayBegan{});
    for (const QString &account : settlement::accountsShortOfMargin(m_books, m_exchange, m_step)) {
        for (const int number : settlement::openOrders(m_books, account))
            cancelByBroker(number, QStringLiteral("保证金不足，撤销委托"));
        std::vector<int> sent;
        for (const Order &order : settlement::closingOrders(m_books, m_exchange, account, m_step))
            enter(order, Money(), {}, sent);
        if (!sent.empty())
            m_messages.sendOrders(sent, m_now);
    }
}

void TradingDesk::cancelByBroker(int number, const QString &reason)
{
    const Order &order = orderAt(number);
    m_matching.remove(number, order);
    m_books.cancel(number, m_now, reason);
    noteChange(number);
    touch(order, false);
}

void TradingDesk::playMessage()
{
    moveClock(*m_messages.next());
    const OrderMessages::Message message = m_messages.take();
    for (const int number : message.orders) {
        if (number < m_books.firstOrder())
            continue; // forgotten with its day
        if (message.kind != OrderMessages::CancelReachesExchange && !orderAt(number).isOpen())
            continue; // cancelled by the broker
        switch (message.kind) {
        case OrderMessages::OrderIsSent:
            m_books.send(number, m_now);
            noteChange(number);
            break;
        case OrderMessages::OrderReachesExchange:
            reachExchange(number);
            break;
        case OrderMessages::CancelReachesExchange:
            cancelAtExchange(number);
            break;
        }
    }
}

/// The exchange accepts the order, or refuses it by the rules of that moment.
void TradingDesk::reachExchange(int number)
{
    const Order &order = orderAt(number);
    const QString &symbol = order.instrument->symbol;
    const QString reason =
        m_exchange.isHalted(symbol, m_step + 1) ? kHalted : violatedRule(order, m_exchange.limits(symbol, m_step));
    if (reason.isEmpty()) {
        m_books.accept(number, m_now);
        m_matching.add(number, order, m_exchange, m_step);
    } else {
        m_books.reject(number, m_now, reason);
        touch(order, false);
    }
    noteChange(number);
}

void TradingDesk::cancelAtExchange(int number)
{
    const Order &order = orderAt(number);
    const bool isLate = m_filledBeforeCancel.erase(number) > 0;
    if (isLate && order.isOpen() && order.isAtExchange() && order.price > 0) {
        m_matching.remove(number, order);
        fill({number, order.price, order.leaveQty()});
        m_books.noteLateCancel(number);
    } else if (order.isOpen()) {
        m_matching.remove(number, order);
        m_books.cancel(number, m_now);
        touch(order, false);
    } else if (order.status == OrderStatus::Filled) {
        m_books.noteLateCancel(number);
    } else {
        return; // the exchange was faster
    }
    noteChange(number);
}

void TradingDesk::fill(const Matching::Fill &fill)
{
    m_books.fill(fill.order, m_now, fill.price, fill.qty);
    const Order &order = orderAt(fill.order);
    noteChange(fill.order);
    note(OrderExecuted{order, m_books.executions().back()});
    touch(order, true);
}

void TradingDesk::note(decltype(DeskEvent::what) what)
{
    m_events.push_back({m_now, std::move(what)});
}

void TradingDesk::noteChange(int number)
{
    note(OrderChanged{orderAt(number)});
}

void TradingDesk::touch(const Order &order, bool isFill)
{
    QSet<PositionKey> &positions = m_touched[order.tradingAccount];
    if (isFill || !opens(order.side)) // opening orders freeze money, not positions
        positions.insert({order.instrument->symbol, isOfShort(order.side)});
}

void TradingDesk::reportTouched()
{
    for (auto account = m_touched.cbegin(); account != m_touched.cend(); ++account) {
        const auto &positions = m_books.ledger(account.key())->positions();
        QList<PositionKey> keys = account->values();
        std::sort(keys.begin(), keys.end()); // the order of a set differs between processes
        for (const PositionKey &key : qAsConst(keys))
            note(PositionChanged{account.key(), positions.value(key)});
    }
    for (auto account = m_touched.cbegin(); account != m_touched.cend(); ++account)
        note(AssetChanged{account.key()});
    m_touched.clear();
}

void TradingDesk::report()
{
    // A second thread waits here. Then its changes are reported already, or it reports them: the order is kept.
    const std::lock_guard reporting(m_reporting);
    DeskEvents events;
    {
        const std::lock_guard lock(m_mutex);
        events.swap(m_events);
    }
    if (!events.empty())
        m_listener(events);
}

} // namespace sim
