#include "terminal/Terminal.h"

#include "exchange/Listing.h"
#include "services/KLineService.h"
#include "services/PermissionService.h"
#include "services/QuoteTicks.h"
#include "traffic/Scope.h"

#include <QtGlobal>

#include <utility>

namespace sim {

namespace {

Terminal *s_terminal = nullptr; // set before any thread that reads it starts, reset after the last one ended

} // namespace

Terminal::Terminal(const Scenario &scenario, const Login &login, double speed, bool stands)
    : m_login(login)
    , m_station(scenario.station)
    , m_clock(scenario.start, speed, stands)
    , m_exchange(listing(scenario.securities, scenario.generatedSecurities, scenario.seed, scenario.start.date(),
                         scenario.rules),
                 scenario.seed, scenario.start.date(), m_clock, scenario.rules, scenario.halts)
    , m_accounts(scenario.traders, scenario.fundAccounts)
    , m_bus(std::make_shared<MessageBus>(m_clock, std::chrono::milliseconds(scenario.busDelay)))
    , m_tradeEvents(*m_bus, m_accounts)
    , m_desk(
          m_accounts, scenario.start.toString(QStringLiteral("yyyyMMdd")), m_exchange, scenario.seed, scenario.start,
          [this](const DeskEvents &events) { m_tradeEvents.announce(events); }, scenario.opening)
    , m_strategies(*m_bus, scenario)
{
    Q_ASSERT(!s_terminal);
    s_terminal = this;
    traffic::log().setExchangeClock([this] { return m_clock.msecsSinceEpoch(); });
    KLineService::install(*m_bus, m_exchange);
    PermissionService::install(*m_bus, scenario);
    m_quoteFeed = std::make_unique<QuoteFeed>(
        m_exchange, m_clock,
        [this](const QDateTime &time) {
            playMarket(time);
            m_strategies.onTime(time);
        },
        [](const Quote &quote) {
            traffic::Entry entry;
            entry.kind = traffic::Entry::Quote;
            entry.name = quote.symbol;
            traffic::log().add(std::move(entry));
            QuoteTicks::emitTick(quote);
        });
}

Terminal::~Terminal()
{
    m_quoteFeed->stop();
    m_bus->stop();
    traffic::log().setExchangeClock({});
    s_terminal = nullptr;
}

void Terminal::playMarket(const QDateTime &time)
{
    m_tradeEvents.announceOrdersLoaded();
    m_desk.advance(time);
}

void Terminal::setTimeLimit(const QDateTime &limit)
{
    m_clock.setLimit(limit);
    tellThatTimeMoved();
}

void Terminal::liftTimeLimit()
{
    m_clock.liftLimit();
    tellThatTimeMoved();
}

void Terminal::skipTo(const QDateTime &time)
{
    m_clock.skipTo(time);
    tellThatTimeMoved();
}

void Terminal::tellThatTimeMoved()
{
    m_bus->timeMoved();
    m_quoteFeed->timeMoved();
}

Terminal::Moment::Moment(Terminal &terminal) : m_hold(terminal.m_clock)
{
    terminal.m_desk.advance(terminal.now());
}

Prices Terminal::latestPrices() const
{
    return [this, step = m_exchange.stepAt(now())](const QString &symbol) {
        return m_exchange.lastPrice(symbol, step).value_or(0);
    };
}

Terminal::OrderQuestion Terminal::askBeforeOrders(OrderQuestion question)
{
    return std::exchange(m_orderQuestion, std::move(question));
}

bool Terminal::mayPlace(const std::vector<Order> &orders)
{
    const OrderQuestion question = m_orderQuestion; // it may be ended while it is asked
    if (!question)
        return true;
    bool may = false;
    {
        const traffic::CallScope none(0); // what happens while the event loop spins belongs to no call
        const SimulatedClock::Release goesOn(m_clock);
        may = question(orders);
    }
    m_desk.advance(now());
    return may;
}

Terminal &Terminal::instance()
{
    if (!s_terminal)
        qFatal("The simulated host was called while no terminal exists");
    return *s_terminal;
}

} // namespace sim
