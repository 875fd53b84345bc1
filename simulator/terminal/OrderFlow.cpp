#include "terminal/OrderFlow.h"

#include "exchange/Exchange.h"
#include "exchange/Random.h"
#include "platform/Agenda.h"

#include <algorithm>

namespace sim {

namespace {

constexpr quint64 kFlow = 0xf70; // separates the programme's random numbers from all others

constexpr int kBeatMs = 50;
constexpr int kIdleMs = 1000; // while the market is closed
constexpr int kLifeMs = 1000; // of an order
constexpr size_t kBeatsOfLife = kLifeMs / kBeatMs;
constexpr size_t kInstruments = 50;
constexpr double kFarBelow = 0.8; // of the last price: the limit of an order without a price limit

const QString kTag = QStringLiteral("FLOW");
const QString kInstance = QStringLiteral("FLOW-01");

bool trades(const Exchange &exchange, const QDateTime &time)
{
    const qint64 next = exchange.stepAt(time) + 1;
    return Exchange::phase(next) == Phase::Continuous && exchange.timeOfStep(next) <= time.addSecs(steps::kSeconds);
}

FundAccount fundOf(const OrderFlowTerms &terms, const Accounts &accounts)
{
    const FundAccount *const fund = accounts.fundAccount(terms.fundAccount);
    return fund ? *fund : accounts.fundAccounts(AllFunds).first();
}

} // namespace

OrderFlow::OrderFlow(const OrderFlowTerms &terms, const Accounts &accounts, TradingDesk &desk, const Exchange &exchange,
                     Agenda &agenda, quint64 seed)
    : m_terms(terms)
    , m_fund(fundOf(terms, accounts))
    , m_trader(accounts.traders().lastKey())
    , m_desk(desk)
    , m_exchange(exchange)
    , m_agenda(agenda)
    , m_key(random::subkey(random::scramble(seed), kFlow))
{
    const SecurityKind kind = m_fund.property == FuturesFund ? SecurityKind::Future : SecurityKind::Share;
    for (const Instrument &instrument : exchange.instruments()) {
        if (instrument.kind == kind)
            m_instruments.push_back(&instrument);
    }
    const auto smallestOrder = [](const Instrument *one) {
        return one->price * double(one->multiplier) * double(std::max(one->lot, one->minQty));
    };
    std::stable_sort(m_instruments.begin(), m_instruments.end(),
                     [&](const auto *one, const auto *other) { return smallestOrder(one) < smallestOrder(other); });
    m_instruments.resize(std::min(m_instruments.size(), kInstruments));
}

void OrderFlow::start(const QDateTime &time)
{
    if (m_terms.ordersPerSecond > 0)
        m_agenda.enter(time, [this](const QDateTime &now) { beat(now); });
}

void OrderFlow::beat(const QDateTime &time)
{
    const bool isSkipped = m_skipsUntil.isValid() && time < m_skipsUntil;
    const bool isTrading = !isSkipped && trades(m_exchange, time);
    if (m_toCancel.size() == kBeatsOfLife || (!isTrading && !m_toCancel.empty())) {
        m_desk.cancel(m_toCancel.front(), time);
        m_toCancel.pop_front();
    }
    if (isTrading) {
        m_millis += kBeatMs;
        const qint64 due = m_millis * m_terms.ordersPerSecond / 1000;
        m_toCancel.push_back(place(int(due - m_placed), time));
        m_placed = due;
    }
    const bool isBusy = isTrading || !m_toCancel.empty();
    const QDateTime next = isSkipped ? m_skipsUntil : time.addMSecs(isBusy ? kBeatMs : kIdleMs);
    m_agenda.enter(next, [this](const QDateTime &now) { beat(now); });
}

void OrderFlow::burst(int orders, const QDateTime &time)
{
    m_agenda.enter(time.addMSecs(kLifeMs),
                   [this, entered = place(orders, time)](const QDateTime &now) { m_desk.cancel(entered, now); });
}

OrderFlow::Cancels OrderFlow::place(int count, const QDateTime &time)
{
    Cancels cancels;
    if (m_instruments.empty() || count == 0)
        return cancels;
    std::vector<Order> orders;
    orders.reserve(size_t(count));
    for (int i = 0; i < count; ++i)
        orders.push_back(order(time));
    cancels.reserve(size_t(count));
    for (const Order &entered : m_desk.place(orders, time)) {
        if (entered.isOpen())
            cancels.push_back({entered.id, entered.tradingAccount});
    }
    return cancels;
}

Order OrderFlow::order(const QDateTime &time)
{
    const qint64 number = m_ordered++;
    const double chance = random::from0To1(m_key, number);
    const Instrument &instrument = *m_instruments[size_t(chance * double(m_instruments.size()))];
    const qint64 step = m_exchange.stepAt(time);
    const PriceLimits limits = m_exchange.limits(instrument.symbol, step);
    const double last = m_exchange.lastPrice(instrument.symbol, step).value_or(instrument.price);
    Order order;
    order.clientId = m_desk.nextClientOrderId();
    order.tradingAccount = m_fund.tradingAccounts.first();
    order.trader = m_trader;
    order.tag = kTag;
    order.algoId = kInstance;
    order.instrument = &instrument;
    order.side = m_fund.property == FuturesFund ? Side::BuyOpen : Side::Buy;
    order.priceType = PriceType::Limit;
    order.price = limits.areSet() ? limits.lower : instrument.priceOf(instrument.ticksOf(last * kFarBelow));
    order.qty = std::max(instrument.lot, instrument.minQty);
    return order;
}

} // namespace sim
