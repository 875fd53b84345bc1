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
    , m_bus(std::make_shared<MessageBus>(m_clock, std::chrono::milliseconds(scenario.busDelay), &m_faults))
    , m_tradeEvents(*m_bus, m_accounts, m_faults, m_clock, m_exchange.timeOfStep(m_exchange.stepAt(scenario.start) + 1))
    , m_desk(
          m_accounts, scenario.start.toString(QStringLiteral("yyyyMMdd")), m_exchange, scenario.seed, scenario.start,
          [this](const DeskEvents &events) {
              m_tradeEvents.announce(events);
              m_alarm.check();
          },
          scenario.opening, scenario.orderDelays, [this] { return m_faults.take(Fault::FillInParts); })
    , m_strategies(*m_bus, scenario, m_faults)
    , m_flow(scenario.orderFlow, m_accounts, m_desk, m_exchange, m_agenda, scenario.seed)
    , m_control(*this, m_faults, m_agenda, m_flow)
{
    Q_ASSERT(!s_terminal);
    s_terminal = this;
    traffic::log().setExchangeClock([this] { return m_clock.msecsSinceEpoch(); });
    KLineService::install(*m_bus, m_exchange, m_faults);
    PermissionService::install(*m_bus, scenario, m_faults);
    for (const FaultSetting &fault : scenario.faults)
        m_faults.set(fault);
    // The first of the threads below may need the world as of a later time, so the agenda is written before. Its
    // actions use all of this.
    const Agenda::Standstill untilAllIsThere(m_agenda);
    m_control.plan(scenario.timeline);
    m_flow.start(scenario.start);
    m_quoteFeed = std::make_unique<QuoteFeed>(
        m_exchange, m_clock,
        [this](const QDateTime &time) {
            playMarket(time);
            m_strategies.onTime(time);
        },
        [this](const Quote &quote) {
            traffic::Entry entry;
            entry.kind = traffic::Entry::Quote;
            entry.name = quote.symbol;
            traffic::log().add(std::move(entry));
            QuoteTicks::emitTick(withOrders(quote));
        });
    m_alarm.start(
        m_clock, [this] { return m_desk.nextMessage(); }, [this](const QDateTime &time) { play(time); });
}

Terminal::~Terminal()
{
    m_agenda.stop();
    m_alarm.stop();
    m_quoteFeed->stop();
    m_bus->stop();
    traffic::log().setExchangeClock({});
    s_terminal = nullptr;
}

void Terminal::playMarket(const QDateTime &time)
{
    m_tradeEvents.announceOrdersLoaded();
    play(time);
}

void Terminal::play(const QDateTime &time)
{
    m_agenda.playUntil(time);
    m_desk.advance(time);
}

std::optional<Quote> Terminal::quote(const QString &symbol) const
{
    const std::optional<Quote> quote = m_exchange.quote(symbol);
    return quote ? std::make_optional(withOrders(*quote)) : std::nullopt;
}

Quote Terminal::withOrders(Quote quote) const
{
    m_desk.addOrdersTo(quote);
    return quote;
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

void Terminal::pause()
{
    m_clock.pause();
    tellThatTimeMoved();
}

void Terminal::resume()
{
    m_clock.resume();
    tellThatTimeMoved();
}

void Terminal::setSpeed(double speed)
{
    m_clock.setSpeed(speed);
    tellThatTimeMoved();
}

void Terminal::skipTo(const QDateTime &time)
{
    m_clock.skipTo(time);
    tellThatTimeMoved();
}

void Terminal::tellThatTimeMoved()
{
    m_agenda.timeMoved();
    m_bus->timeMoved();
    m_quoteFeed->timeMoved();
    m_alarm.check();
}

Terminal::Moment::Moment(Terminal &terminal) : m_noCommand(terminal.m_agenda), m_hold(terminal.m_clock)
{
    terminal.play(terminal.now());
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
    letTimeRun([&] { may = question(orders); });
    return may;
}

void Terminal::letTimeRun(const std::function<void()> &meanwhile)
{
    {
        const traffic::CallScope none(0); // what happens while the event loop spins belongs to no call
        const SimulatedClock::Release goesOn(m_clock);
        const Agenda::Release commandsAct(m_agenda);
        meanwhile();
    }
    play(now());
}

void Terminal::awaitSlowServer()
{
    m_heldCall = traffic::CallScope::current();
    {
        const Agenda::Release commandsAct(m_agenda);
        if (m_whenHeld)
            (*m_whenHeld)();
        else
            m_faults.awaitSlowServer(m_clock.speed());
    }
    play(now());
    m_heldCall = 0;
}

void Terminal::repeat(const std::function<void()> &action, const std::function<void()> &whenHeld)
{
    const OrderQuestion question = askBeforeOrders({});
    m_whenHeld = &whenHeld;
    action();
    m_whenHeld = nullptr;
    askBeforeOrders(question);
}

bool Terminal::isThere()
{
    return s_terminal;
}

Terminal &Terminal::instance()
{
    if (!s_terminal)
        qFatal("The simulated host was called while no terminal exists");
    return *s_terminal;
}

} // namespace sim
