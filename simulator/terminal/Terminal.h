#pragma once

#include "HostApi.h"
#include "books/TradingDesk.h"
#include "exchange/Exchange.h"
#include "platform/MessageBus.h"
#include "platform/QuoteFeed.h"
#include "platform/Scenario.h"
#include "platform/SimulatedClock.h"
#include "platform/StrategyPlatform.h"
#include "services/TradeEvents.h"

#include <memory>

namespace sim {

/// The make-believe terminal: clock, market, trading desk, login and bus of one scenario. What the host's classes
/// answer comes from here. Made and destroyed by main (or a test), one at a time; in between any thread may use it. The
/// library's singletons outlive it: all they touch at their end is the bus, which they share.
class VARNEL_HOST_API Terminal {
public:
    Terminal(const Scenario &scenario, const Login &login, double speed);
    ~Terminal();

    /// The one that exists. Without one the process ends with a message.
    static Terminal &instance();

    const Login &login() const { return m_login; }
    const QString &station() const { return m_station; }
    const Accounts &accounts() const { return m_accounts; }
    TradingDesk &desk() { return m_desk; }
    const TradingDesk &desk() const { return m_desk; }
    const Exchange &exchange() const { return m_exchange; }

    /// Exchange time.
    QDateTime now() const { return m_clock.now(); }

    /// Plays what rests at the exchange up to that time. To be called at every change of the quotes; calls that come
    /// late or are left out change nothing of what happens.
    void playMarket(const QDateTime &time);

    /// What everything listed trades at now.
    Prices latestPrices() const;

    const std::shared_ptr<MessageBus> &bus() const { return m_bus; }
    QuoteFeed &quoteFeed() { return *m_quoteFeed; }

private:
    Q_DISABLE_COPY(Terminal)

    const Login m_login;
    const QString m_station;
    const SimulatedClock m_clock;
    const Exchange m_exchange;
    const Accounts m_accounts;
    const std::shared_ptr<MessageBus> m_bus;
    TradeEvents m_tradeEvents;
    TradingDesk m_desk;
    StrategyPlatform m_strategies;
    std::unique_ptr<QuoteFeed> m_quoteFeed; ///< runs from the end of the construction
};

} // namespace sim
