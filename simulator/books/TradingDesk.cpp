#include "books/TradingDesk.h"

#include "exchange/Exchange.h"
#include "exchange/Random.h"

#include <algorithm>

namespace sim {

namespace {

// What a random number is for.
enum Chance : qint64 { IsSplit, FirstPart };

constexpr quint64 kFills = 0xf111; // separates the desk's random numbers from those of the market

QString whyNotOpen(OrderStatus status)
{
    switch (status) {
    case OrderStatus::Filled:
        return QStringLiteral("委托已全部成交，不能撤单");
    case OrderStatus::Cancelled:
    case OrderStatus::PartlyCancelled:
        return QStringLiteral("委托已撤单");
    case OrderStatus::Rejected:
        return QStringLiteral("废单不能撤单");
    case OrderStatus::Reported:
    case OrderStatus::PartlyFilled:
        break;
    }
    return {};
}

} // namespace

TradingDesk::TradingDesk(const Accounts &accounts, const QString &orderIdPrefix, const Exchange &exchange, quint64 seed,
                         const QDateTime &start, Listener listener, const OpeningTerms &opening)
    : m_exchange(exchange)
    , m_key(random::subkey(random::scramble(seed), kFills))
    , m_listener(std::move(listener))
    , m_books(accounts, orderIdPrefix)
    , m_now(start)
    , m_step(exchange.stepAt(start))
{
    openBooks(m_books, exchange, seed, start, opening);
    for (int number = 0; number < int(m_books.orders().size()); ++number) {
        if (orderAt(number).isOpen())
            m_open.add(number, orderAt(number));
    }
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
    return number < 0 ? std::nullopt : std::make_optional(books->orders()[size_t(number)]);
}

std::vector<Order> TradingDesk::place(const std::vector<Order> &orders, const QDateTime &now)
{
    std::vector<Order> entered;
    entered.reserve(orders.size());
    {
        const std::lock_guard lock(m_mutex);
        moveClock(now);
        playAllSteps(m_exchange.stepAt(m_now));

        // New orders change only the frozen money of an account: its positions are valued once.
        const Prices prices = [this](const QString &symbol) {
            return m_exchange.lastPrice(symbol, m_step).value_or(0);
        };
        QHash<QString, Money> withFrozen; // the available money, by trading account
        for (Order order : orders) {
            const Ledger &ledger = *m_books.ledger(order.tradingAccount);
            if (!withFrozen.contains(order.tradingAccount))
                withFrozen.insert(order.tradingAccount, ledger.value(prices).available + ledger.frozenCash());
            order.entered = m_now;
            if (m_exchange.isHalted(order.instrument->symbol, m_step + 1))
                order.remark = QStringLiteral("证券停牌，不能委托");
            const int number = m_books.enter(order, withFrozen[order.tradingAccount] - ledger.frozenCash(),
                                             m_exchange.limits(order.instrument->symbol, m_step));
            const Order &asEntered = orderAt(number);
            if (asEntered.isOpen()) {
                m_open.add(number, asEntered);
                touch(asEntered, false);
            }
            m_events.emplace_back(OrderEntered{asEntered});
            entered.push_back(asEntered);
        }
        reportTouched();
    }
    report();
    return entered;
}

QStringList TradingDesk::cancel(const std::vector<CancelRequest> &requests, const QDateTime &now)
{
    QStringList reasons;
    {
        const std::lock_guard lock(m_mutex);
        moveClock(now);
        playAllSteps(m_exchange.stepAt(m_now));
        for (const CancelRequest &request : requests)
            reasons.append(cancel(request));
        reportTouched();
    }
    report();
    return reasons;
}

QString TradingDesk::cancel(const CancelRequest &request)
{
    const int number = m_books.orderNumber(request.orderId);
    if (number < 0)
        return QStringLiteral("委托不存在");
    const Order &order = orderAt(number);
    if (order.tradingAccount != request.tradingAccount)
        return QStringLiteral("交易账号与委托不符");
    if (!order.isOpen())
        return whyNotOpen(order.status);
    m_open.remove(number, order);
    m_books.cancel(number, m_now);
    m_events.emplace_back(OrderChanged{order});
    touch(order, false);
    return {};
}

void TradingDesk::advance(const QDateTime &now)
{
    const qint64 lastStep = m_exchange.stepAt(now);
    for (bool isMore = true; isMore;) {
        {
            const std::lock_guard lock(m_mutex); // released after each step, so that no caller waits for a whole day
            isMore = playStep(lastStep);
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

void TradingDesk::playAllSteps(qint64 lastStep)
{
    while (playStep(lastStep)) {
    }
}

bool TradingDesk::playStep(qint64 lastStep)
{
    if (m_open.isEmpty())
        m_step = qMax(m_step, lastStep);
    if (m_step >= lastStep)
        return false;
    ++m_step;
    const QDateTime time = m_exchange.timeOfStep(m_step);
    moveClock(time);
    for (const OpenOrders::Fill &fillable : m_open.fillsAt(m_exchange, m_step))
        fill(fillable, time);
    reportTouched();
    return true;
}

void TradingDesk::fill(const OpenOrders::Fill &fillable, const QDateTime &time)
{
    const Order &order = orderAt(fillable.order);
    m_books.fill(fillable.order, time, fillable.price, qtyToFill(order));
    if (!order.isOpen())
        m_open.remove(fillable.order, order);
    m_events.emplace_back(OrderChanged{order});
    m_events.emplace_back(OrderExecuted{order, m_books.executions().back()});
    touch(order, true);
}

qint64 TradingDesk::qtyToFill(const Order &order) const
{
    const qint64 open = order.leaveQty();
    const qint64 lots = open / order.instrument->lot;
    if (order.priceType != PriceType::Limit || isAfterHours(order) || order.filledQty > 0 || lots < 2)
        return open;
    const quint64 key = random::subkey(m_key, random::hash(order.id));
    const MarketRules &rules = m_exchange.rules();
    if (random::from0To1(key, IsSplit) >= rules.splitProbability)
        return open;
    const double part =
        rules.smallestFirstPart + (rules.largestFirstPart - rules.smallestFirstPart) * random::from0To1(key, FirstPart);
    return qMax<qint64>(1, qint64(double(lots) * part)) * order.instrument->lot;
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
            m_events.emplace_back(PositionChanged{account.key(), positions.value(key)});
    }
    for (auto account = m_touched.cbegin(); account != m_touched.cend(); ++account)
        m_events.emplace_back(AssetChanged{account.key()});
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
