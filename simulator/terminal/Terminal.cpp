#include "terminal/Terminal.h"

#include "exchange/Listing.h"
#include "services/KLineService.h"
#include "services/PermissionService.h"
#include "services/QuoteTicks.h"
#include "traffic/Scope.h"

#include <QtGlobal>

namespace sim {

namespace {

Terminal *s_terminal = nullptr; // set before any thread that reads it starts, reset after the last one ended

constexpr double kMicrosecondsPerMillisecond = 1000;

} // namespace

Terminal::Terminal(const Scenario &scenario, const Login &login, double speed)
    : m_login(login)
    , m_station(scenario.station)
    , m_clock(scenario.start, speed)
    , m_exchange(listing(scenario.securities, scenario.generatedSecurities, scenario.seed, scenario.start.date(),
                         scenario.rules),
                 scenario.seed, scenario.start.date(), m_clock, scenario.rules)
    , m_accounts(scenario.traders, scenario.fundAccounts)
    , m_bus(std::make_shared<MessageBus>(
          std::chrono::microseconds(qint64(scenario.busDelay * kMicrosecondsPerMillisecond / speed))))
    , m_tradeEvents(*m_bus, m_accounts)
    , m_desk(
          m_accounts, scenario.start.toString(QStringLiteral("yyyyMMdd")), m_exchange, scenario.seed, scenario.start,
          [this](const DeskEvents &events) { m_tradeEvents.announce(events); }, scenario.opening)
    , m_strategies(*m_bus, scenario)
    , m_flow(scenario.orderFlow, m_accounts, m_desk, m_exchange, m_agenda, scenario.seed)
    , m_control(*this, m_faults, m_agenda, m_flow)
{
    Q_ASSERT(!s_terminal);
    s_terminal = this;
    traffic::log().setExchangeClock([this] { return m_clock.msecsSinceEpoch(); });
    KLineService::install(*m_bus, m_exchange);
    PermissionService::install(*m_bus, scenario);
    for (const FaultSetting &fault : scenario.faults)
        m_faults.set(fault);
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
    // From here on the agenda's thread uses all of the above.
    m_control.plan(scenario.timeline);
    m_flow.start(scenario.start);
}

Terminal::~Terminal()
{
    m_agenda.stop();
    m_quoteFeed->stop();
    m_bus->stop();
    traffic::log().setExchangeClock({});
    s_terminal = nullptr;
}

void Terminal::playMarket(const QDateTime &time)
{
    m_tradeEvents.announceOrdersLoaded();
    m_agenda.playUntil(time);
    m_desk.advance(time);
}

Terminal::Moment::Moment(Terminal &terminal) : m_hold(terminal.m_clock)
{
    const QDateTime now = terminal.now();
    terminal.m_agenda.playUntil(now);
    terminal.m_desk.advance(now);
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
    m_quoteFeed->timeMoved();
}

Prices Terminal::latestPrices() const
{
    return [this, step = Exchange::stepAt(now())](const QString &symbol) {
        return m_exchange.lastPrice(symbol, step).value_or(0);
    };
}

bool Terminal::mayPlace(const std::vector<Order> &orders) const
{
    const traffic::CallScope none(0); // what happens while the event loop spins belongs to no call
    return !m_orderQuestion || m_orderQuestion(orders);
}

Terminal &Terminal::instance()
{
    if (!s_terminal)
        qFatal("The simulated host was called while no terminal exists");
    return *s_terminal;
}

} // namespace sim
