#include "platform/Terminal.h"

#include "exchange/Listing.h"
#include "services/KLineService.h"

#include <QtGlobal>

namespace sim {

namespace {

Terminal *s_terminal = nullptr; // set before the first thread that asks starts, reset after the last has ended

/// How long a request or event is on its way, at normal speed.
constexpr double kLatencyMicroseconds = 20000;

} // namespace

Terminal::Terminal(const Scenario &scenario, const Login &login, double speed)
    : m_login(login)
    , m_station(scenario.station)
    , m_clock(scenario.start, speed)
    , m_exchange(listing(scenario.securities, scenario.generatedSecurities, scenario.seed, scenario.start.date()),
                 scenario.seed, scenario.start.date(), m_clock)
    , m_accounts(scenario.traders, scenario.fundAccounts)
    , m_bus(std::make_shared<MessageBus>(std::chrono::microseconds(qint64(kLatencyMicroseconds / speed))))
    , m_desk(m_accounts, scenario.start.toString(QStringLiteral("yyyyMMdd")), m_exchange, scenario.seed, scenario.start,
[](const DeskEvents &) {})
{
    Q_ASSERT(!s_terminal);
    s_terminal = this;
    KLineService::install(*m_bus, m_exchange);
}

Terminal::~Terminal()
{
    m_bus->stop();
    s_terminal = nullptr;
}

Prices Terminal::latestPrices() const
{
    return [this](const QString &symbol) {
        const std::optional<Quote> quote = m_exchange.quote(symbol);
        return quote ? quote->last : 0.0;
    };
}

Terminal &Terminal::instance()
{
    if (!s_terminal)
        qFatal("The simulated host was called while no terminal exists");
    return *s_terminal;
}

} // namespace sim
