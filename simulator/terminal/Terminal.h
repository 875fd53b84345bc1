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

#include <functional>
#include <memory>
#include <vector>

namespace sim {

/// The simulated terminal: puts clock, market, trading desk, login and bus of one scenario together. The classes of the
/// host answer from it.
/// Made and destroyed by main or a test, one at a time; meanwhile any thread may use it. The library's singletons
/// outlive it: in their destructors they use only the bus, which they share.
class VARNEL_HOST_API Terminal {
public:
    /// stands: exchange time stands at the start until it is told to go on.
    Terminal(const Scenario &scenario, const Login &login, double speed, bool stands = false);
    ~Terminal();

    /// The existing terminal. Without one the process aborts with a message.
    static Terminal &instance();

    const Login &login() const { return m_login; }
    const QString &station() const { return m_station; }
    const Accounts &accounts() const { return m_accounts; }
    TradingDesk &desk() { return m_desk; }
    const TradingDesk &desk() const { return m_desk; }
    Exchange &exchange() { return m_exchange; }
    const Exchange &exchange() const { return m_exchange; }

    /// Exchange time.
    QDateTime now() const { return m_clock.now(); }

    /// While it exists, exchange time stands still, and the market has been played up to it. A call of a page is made
    /// in one, so that its answer depends on the time of the call alone.
    class VARNEL_HOST_API Moment {
    public:
        explicit Moment(Terminal &terminal);

    private:
        const SimulatedClock::Hold m_hold;
    };

    /// Exchange time goes no further than this. A limit in the past is one of this moment.
    void setTimeLimit(const QDateTime &limit);

    /// Exchange time runs on from where it is.
    void liftTimeLimit();

    /// How long to wait in real time until that exchange time: at most an hour, 0 when it has come.
    std::chrono::milliseconds realTimeUntil(const QDateTime &time) const { return m_clock.realTimeUntil(time); }

    /// Makes it that time at once, and moves the limit there if it comes earlier.
    void skipTo(const QDateTime &time);

    /// Plays the open orders up to that time. Called at every change of the quotes; late or missing calls do not change
    /// the result.
    void playMarket(const QDateTime &time);

    /// The latest prices of all securities.
    Prices latestPrices() const;

    /// Shows the user the orders of one call, and returns whether they may be placed. It may spin the event loop.
    using OrderQuestion = std::function<bool(const std::vector<Order> &)>;

    /// From now on the user is asked before orders are placed; an empty function ends that. Returns what was asked
    /// before. User-interface thread only, as the next one.
    OrderQuestion askBeforeOrders(OrderQuestion question);

    /// Asks the user, if that is wanted. Exchange time runs on meanwhile, also in a Moment.
    bool mayPlace(const std::vector<Order> &orders);

    const std::shared_ptr<MessageBus> &bus() const { return m_bus; }
    QuoteFeed &quoteFeed() { return *m_quoteFeed; }

private:
    Q_DISABLE_COPY(Terminal)

    void tellThatTimeMoved();

    const Login m_login;
    const QString m_station;
    SimulatedClock m_clock;
    Exchange m_exchange;
    const Accounts m_accounts;
    const std::shared_ptr<MessageBus> m_bus;
    TradeEvents m_tradeEvents;
    TradingDesk m_desk;
    StrategyPlatform m_strategies;
    OrderQuestion m_orderQuestion;
    std::unique_ptr<QuoteFeed> m_quoteFeed; ///< last: its thread uses all of the above
};

} // namespace sim
