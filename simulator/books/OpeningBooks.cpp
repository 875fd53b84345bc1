#include "books/OpeningBooks.h"

#include "books/Books.h"
#include "exchange/Exchange.h"
#include "exchange/Random.h"

#include <QHash>

#include <algorithm>
#include <cmath>
#include <vector>

namespace sim {

namespace {

constexpr int kSecondsPerMinute = 60;

/// What an account holds of one kind of security at the opening.
struct TradingProfile {
    SecurityKind kind;
    double smallest; ///< value of a position
    double largest;
};

const QVector<TradingProfile> kStockProfiles{
    {SecurityKind::Share, 50e3, 600e3}, {SecurityKind::Fund, 50e3, 300e3}, {SecurityKind::Bond, 100e3, 500e3}};
const QVector<TradingProfile> kFuturesProfiles{{SecurityKind::Future, 2e6, 12e6}};

constexpr double kSmallestOrder = 20e3;
constexpr double kLargestOrder = 250e3;
constexpr qint64 kMostContracts = 6; ///< in an order

constexpr double kMarketOrders = 0.1;
constexpr double kOpening = 0.6; ///< probability that an order opens rather than closes
constexpr double kCancels = 0.3;
constexpr int kLongestWait = 10; ///< minutes from entry to cancel
constexpr double kMistakes = 0.06;
constexpr double kAlgoOrders = 0.3;
constexpr double kBias = 0.8; ///< probability that a futures account trades in its usual direction

/// How far limit prices lie from the latest price: up to this part below it, or above it, for a buy.
constexpr double kFarthestBehind = 0.006;
constexpr double kFarthestAhead = 0.003;

const QStringList kTags{QStringLiteral("manual"), QStringLiteral("basket"), QStringLiteral("rebalance")};
const QString kAlgoTag = QStringLiteral("strategy");
const QStringList kAlgos{QStringLiteral("GRID-01"), QStringLiteral("GRID-02"), QStringLiteral("TWAP-01")};

/// The day so far, minute by minute.
class Session {
public:
    Session(const Exchange &exchange, const QDateTime &start) : m_exchange(exchange), m_start(start) {}

    int minutes() const
    {
        const QDateTime midnight(m_start.date(), QTime(0, 0), Qt::UTC);
        return int(m_exchange.calendar().minutesEndedBy(m_start) - m_exchange.calendar().minutesEndedBy(midnight));
    }

    /// Reads the candles of the security. False when a minute has none: then the account does not trade it.
    bool load(const Instrument &instrument)
    {
        const QDateTime midnight(m_start.date(), QTime(0, 0), Qt::UTC);
        const QVector<Candle> candles = m_exchange.candles(instrument.symbol, midnight, m_start, CandlePeriod::Minute);
        m_candles.insert(instrument.symbol, candles);
        return candles.size() == minutes();
    }

    /// Of a security that was loaded.
    const Candle &candle(const QString &symbol, int minute) const { return (*m_candles.constFind(symbol))[minute]; }

    const Exchange &exchange() const { return m_exchange; }

    PriceLimits limits(const QString &symbol) const { return m_exchange.limits(symbol, m_exchange.stepAt(m_start)); }

    double participation() const { return m_exchange.rules().openingParticipation; }

private:
    const Exchange &m_exchange;
    const QDateTime m_start;
    QHash<QString, QVector<Candle>> m_candles;
};

struct Fill {
    QDateTime time;
    int order;
    double price;
    qint64 qty;
};

/// One account's day.
class AccountDay {
public:
    AccountDay(Books &books, Session &session, const OpeningTerms &terms, const FundAccount &fund, quint64 key,
               bool mostlyShort)
        : m_books(books)
        , m_session(session)
        , m_terms(terms)
        , m_isFutures(fund.property == FuturesFund)
        , m_mostlyShort(mostlyShort)
        , m_given(terms.given.value(fund.account))
        , m_account(fund.tradingAccounts.first())
        , m_traders(books.accounts().traders().keys())
        , m_chance(random::subkey(key, random::hash(fund.account)))
    {
    }

    /// Books the opening money and positions.
    void open(const QVector<Instrument> &listed);

    /// The seconds of trading at which the account enters orders, unsorted.
    QVector<int> plan(int minutes);

    void enterOrder(int second);

    /// Adds the fills of the account's open orders in that minute.
    void findFills(int minute, QVector<Fill> &fills);

    /// Cancels the orders that are due at the end of the minute.
    void cancelOrders(int minute);

private:
    /// An open order.
    struct Working {
        int order;
        int enteredSecond;
        int cancelMinute; ///< -1: never
    };

    double chance() { return m_chance.from0To1(); }
    qint64 whole(qint64 first, qint64 last) { return m_chance.whole(first, last); }
    bool happens(double probability) { return chance() < probability; }
    double between(double low, double high) { return low + (high - low) * chance(); }

    template <typename List>
    auto oneOf(const List &list)
    {
        return list[int(whole(0, list.size() - 1))];
    }

    void pick(const QVector<Instrument> &listed, const TradingProfile &profile);
    bool mostlyShort() { return m_isFutures && happens(kBias) == m_mostlyShort; }
    double limitPrice(const Instrument &instrument, double price, double change) const;
    void makeOpening(Order &order);
    bool makeClosing(Order &order);
    void makeMistake(Order &order);
    Order makeOrder(int second);

    Books &m_books;
    Session &m_session;
    const OpeningTerms &m_terms;
    const bool m_isFutures;
    const bool m_mostlyShort;
    const GivenOpening m_given;
    const QString m_account;
    const QStringList m_traders;
    random::Sequence m_chance;
    QVector<const Instrument *> m_instruments;
    QVector<Working> m_working;
    int m_valuedMinute = -1;
    Money m_availableAndFrozen; ///< at the prices at which that minute opened
};

/// The quantity, in whole lots, that is worth that value.
qint64 qtyWorth(const Instrument &instrument, double value)
{
    const double lots = value / (instrument.price * instrument.multiplier * double(instrument.lot));
    return qMax(instrument.minQty, qint64(lots) * instrument.lot);
}

void AccountDay::pick(const QVector<Instrument> &listed, const TradingProfile &profile)
{
    QVector<const Instrument *> candidates;
    for (const Instrument &instrument : listed) {
        if (instrument.kind == profile.kind && instrument.dailyVolume > 0)
            candidates.append(&instrument);
    }
    Ledger &ledger = *m_books.ledgerToOpen(m_account);
    for (int i = 0; i < m_terms.positions[profile.kind] && !candidates.isEmpty(); ++i) {
        const Instrument *instrument = candidates.takeAt(int(whole(0, candidates.size() - 1)));
        if (!m_session.load(*instrument))
            continue;
        m_instruments.append(instrument);
        const qint64 qty = qtyWorth(*instrument, between(profile.smallest, profile.largest));
        const double spread = m_isFutures ? 0.03 : 0.15;
        const double openPrice = instrument->priceOf(
            qMax<qint64>(1, instrument->ticksOf(instrument->price * (1 + between(-spread, spread)))));
        ledger.holdFromBefore(*instrument, m_isFutures && m_mostlyShort, qty, openPrice);
    }
}

void AccountDay::open(const QVector<Instrument> &listed)
{
    const double cash = m_isFutures ? between(20e6, 30e6) : between(6e6, 10e6);
    *m_books.ledgerToOpen(m_account) = Ledger(m_given.cash.value_or(std::floor(cash)));
    if (m_given.positions) {
        holdGiven(m_books, m_session.exchange(), m_account, m_given);
        return;
    }
    const QVector<TradingProfile> &profiles = m_isFutures ? kFuturesProfiles : kStockProfiles;
    for (const TradingProfile &profile : profiles)
        pick(listed, profile);
}

QVector<int> AccountDay::plan(int minutes)
{
    QVector<int> seconds;
    for (int i = 0; i < m_terms.orders && minutes > 0 && !m_instruments.isEmpty(); ++i)
        seconds.append(int(whole(0, qint64(minutes) * kSecondsPerMinute - 1)));
    return seconds;
}

/// The price plus that part of it, at least one tick inside the day's limits.
double AccountDay::limitPrice(const Instrument &instrument, double price, double change) const
{
    const PriceLimits limits = m_session.limits(instrument.symbol);
    qint64 ticks = qMax<qint64>(1, instrument.ticksOf(price * (1 + change)));
    if (limits.areSet())
        ticks = qBound(instrument.ticksOf(limits.lower) + 1, ticks, instrument.ticksOf(limits.upper) - 1);
    return instrument.priceOf(ticks);
}

void AccountDay::makeOpening(Order &order)
{
    order.instrument = oneOf(m_instruments);
    if (m_isFutures) {
        order.side = mostlyShort() ? Side::SellOpen : Side::BuyOpen;
        order.qty = whole(1, kMostContracts);
    } else {
        order.side = Side::Buy;
        order.qty = qtyWorth(*order.instrument, between(kSmallestOrder, kLargestOrder));
    }
}

bool AccountDay::makeClosing(Order &order)
{
    QVector<const Position *> closable;
    for (const Position &position : m_books.ledger(m_account)->positions()) {
        if (position.closableQty() > 0)
            closable.append(&position);
    }
    if (closable.isEmpty())
        return false;
    const Position &position = *oneOf(closable);
    order.instrument = position.instrument;
    if (m_isFutures) {
        order.side = position.isShort ? Side::BuyClose : Side::SellClose;
        order.qty = whole(1, qMin(kMostContracts, position.closableQty()));
    } else {
        order.side = Side::Sell;
        const qint64 wanted = qtyWorth(*order.instrument, between(kSmallestOrder, kLargestOrder));
        order.qty = qMin(wanted, position.closableQty());
    }
    return true;
}

/// Changes the order so that the broker rejects it.
void AccountDay::makeMistake(Order &order)
{
    const Instrument &instrument = *order.instrument;
    const bool limited = instrument.limitRate > 0 && order.priceType == PriceType::Limit;
    if (limited && happens(0.5))
        order.price = instrument.priceOf(instrument.ticksOf(instrument.price * (1 + 2 * instrument.limitRate)));
    else if (opens(order.side) && instrument.lot > 1 && happens(0.5))
        order.qty += instrument.lot / 2;
    else
        order.qty = instrument.maxQty; // more than the account can pay for or holds
}

Order AccountDay::makeOrder(int second)
{
    Order order;
    order.clientId = m_books.nextClientOrderId();
    order.tradingAccount = m_account;
    order.trader = oneOf(m_traders);
    if (happens(kAlgoOrders)) {
        order.tag = kAlgoTag;
        order.algoId = oneOf(kAlgos);
    } else {
        order.tag = oneOf(kTags);
    }
    if (happens(kOpening) || !makeClosing(order))
        makeOpening(order);

    const Candle &candle = m_session.candle(order.instrument->symbol, second / kSecondsPerMinute);
    order.entered = candle.end.addSecs(second % kSecondsPerMinute - kSecondsPerMinute);
    if (happens(kMarketOrders)) {
        order.priceType = PriceType::Market;
    } else {
        const double change = between(-kFarthestBehind, kFarthestAhead);
        order.price = limitPrice(*order.instrument, candle.open, isBuy(order.side) ? change : -change);
    }
    if (happens(kMistakes))
        makeMistake(order);
    return order;
}

void AccountDay::enterOrder(int second)
{
    const int minute = second / kSecondsPerMinute;
    const Ledger &ledger = *m_books.ledger(m_account);
    if (minute != m_valuedMinute) { // within a minute new orders change only the frozen money
        const Prices prices = [&](const QString &symbol) { return m_session.candle(symbol, minute).open; };
        m_availableAndFrozen = ledger.value(prices).available + ledger.frozenCash();
        m_valuedMinute = minute;
    }
    const Money available = m_availableAndFrozen - ledger.frozenCash();
    const Order order = makeOrder(second);
    const int number = m_books.enter(order, available, m_session.limits(order.instrument->symbol));
    const int cancelMinute = happens(kCancels) ? minute + int(whole(0, kLongestWait)) : -1;
    if (!m_books.order(number).isOpen())
        return;
    m_books.accept(number, order.entered); // what took milliseconds is long over
    m_working.append({number, second, cancelMinute});
}

void AccountDay::findFills(int minute, QVector<Fill> &fills)
{
    for (const Working &working : qAsConst(m_working)) {
        const Order &order = m_books.order(working.order);
        const Instrument &instrument = *order.instrument;
        const Candle &candle = m_session.candle(instrument.symbol, minute);
        const bool buys = isBuy(order.side);
        const bool limited = order.priceType == PriceType::Limit;
        if (limited && (buys ? candle.low > order.price : candle.high < order.price))
            continue;
        const qint64 lots = qint64(double(candle.volume) * m_session.participation()) / instrument.lot;
        if (candle.volume < instrument.lot)
            continue;

        // Counted from 1, because a candle includes its last second but not its first. A fill comes after its order's
        // entry.
        const int minuteBegan = minute * kSecondsPerMinute;
        const int second = int(whole(qMax(0, working.enteredSecond - minuteBegan) + 1, kSecondsPerMinute));
        double price = instrument.priceOf(whole(instrument.ticksOf(candle.low), instrument.ticksOf(candle.high)));
        if (limited)
            price = buys ? qMin(price, order.price) : qMax(price, order.price);
        fills.append({candle.end.addSecs(second - kSecondsPerMinute), working.order, price,
                      qMin(order.leaveQty(), qMax<qint64>(1, lots) * instrument.lot)});
    }
}

void AccountDay::cancelOrders(int minute)
{
    const auto gone = [&](const Working &working) {
        const Order &order = m_books.order(working.order);
        if (order.isOpen() && working.cancelMinute == minute)
            m_books.cancel(working.order, m_session.candle(order.instrument->symbol, minute).end);
        return !order.isOpen();
    };
    m_working.erase(std::remove_if(m_working.begin(), m_working.end(), gone), m_working.end());
}

} // namespace

void openBooks(Books &books, const Exchange &exchange, quint64 seed, const QDateTime &start, const OpeningTerms &terms)
{
    Session session(exchange, start);
    std::vector<AccountDay> days;
    QMap<int, int> funds; // accounts of each property so far
    for (const FundAccount &fund : books.accounts().fundAccounts(AllFunds)) {
        const bool mostlyShort = funds[fund.property]++ % 2 == 0; // so that both directions occur
        days.emplace_back(books, session, terms, fund, random::scramble(seed), mostlyShort);
        days.back().open(exchange.instruments());
    }

    QVector<QPair<int, int>> entries; // second and index of the account
    for (size_t i = 0; i < days.size(); ++i) {
        for (const int second : days[i].plan(session.minutes()))
            entries.append({second, int(i)});
    }
    std::sort(entries.begin(), entries.end());

    auto entry = entries.cbegin();
    for (int minute = 0; minute < session.minutes(); ++minute) {
        for (; entry != entries.cend() && entry->first / kSecondsPerMinute == minute; ++entry)
            days[size_t(entry->second)].enterOrder(entry->first);
        QVector<Fill> fills;
        for (AccountDay &day : days)
            day.findFills(minute, fills);
        std::stable_sort(fills.begin(), fills.end(), [](const Fill &a, const Fill &b) { return a.time < b.time; });
        for (const Fill &fill : qAsConst(fills))
            books.fill(fill.order, fill.time, fill.price, fill.qty);
        for (AccountDay &day : days)
            day.cancelOrders(minute);
    }
    for (const FundAccount &fund : books.accounts().fundAccounts(AllFunds))
        enterGiven(books, exchange, fund.tradingAccounts.first(), terms.given.value(fund.account), start);
}

} // namespace sim
