#pragma once

#include "HostApi.h"
#include "books/TradingDesk.h"
#include "exchange/Exchange.h"
#include "platform/Agenda.h"
#include "platform/Alarm.h"
#include "platform/Faults.h"
#include "platform/MessageBus.h"
#include "platform/QuoteFeed.h"
#include "platform/Scenario.h"
#include "platform/SimulatedClock.h"
#include "platform/StrategyPlatform.h"
#include "services/TradeEvents.h"
#include "terminal/Control.h"
#include "terminal/OrderFlow.h"

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
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
    static bool isThere();

    const Login &login() const { return m_login; }
    const QString &station() const { return m_station; }
    const Accounts &accounts() const { return m_accounts; }
    TradingDesk &desk() { return m_desk; }
    const TradingDesk &desk() const { return m_desk; }
    Exchange &exchange() { return m_exchange; }
    const Exchange &exchange() const { return m_exchange; }

    /// Exchange time.
    QDateTime now() const { return m_clock.now(); }

    /// The quote that the terminal shows now: the exchange's, with the orders that wait there. Nothing for an unknown
    /// symbol and before the first trading day.
    std::optional<Quote> quote(const QString &symbol) const;

    /// While it exists, exchange time stands still, and the world has been played up to it. A call of a page is made
    /// in one, so that its answer depends on the time of the call alone.
    class VARNEL_HOST_API Moment {
    public:
        explicit Moment(Terminal &terminal);

    private:
        const Agenda::Hold m_noCommand;    ///< what the call answers must not depend on when in it a command comes
        const SimulatedClock::Hold m_hold; ///< after it: a command that is acting may move the time
    };

    /// Exchange time goes no further than this. A limit in the past is one of this moment.
    void setTimeLimit(const QDateTime &limit);

    /// Exchange time runs on from where it is.
    void liftTimeLimit();

    /// How long to wait in real time until that exchange time: at most an hour, 0 when it has come.
    std::chrono::milliseconds realTimeUntil(const QDateTime &time) const { return m_clock.realTimeUntil(time); }

    // Exchange time stands still from pause to resume, runs at the speed's multiple of real time, and may be moved
    // forward. Any thread.
    void pause();
    void resume();
    bool isPaused() const { return m_clock.isPaused(); }
    void setSpeed(double speed);
    double speed() const { return m_clock.speed(); }
    void skipTo(const QDateTime &time);

    /// What goes wrong at present.
    Faults &faults() { return m_faults; }

    /// Where commands go, and the state that they change.
    Control &control() { return m_control; }

    /// Plays the agenda and the open orders up to that time. Called at every change of the quotes; late or missing
    /// calls do not change the result.
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

    /// Does what may take long and spin the event loop. Exchange time runs on meanwhile, also in a Moment.
    void letTimeRun(const std::function<void()> &meanwhile);

    /// Holds the call of a page, and this thread, while a server is slow. Commands act meanwhile, also in a Moment: one
    /// of them may end it.
    void awaitSlowServer();

    /// The call of a page that a slow server holds, or held a moment ago: its number in the log of the traffic, or 0.
    quint64 heldCall() const { return m_heldCall; }

    /// Does what a page did in another run: opens it, or makes its call. Nobody is asked and nothing is waited for,
    /// because that was done then. whenHeld: called where a slow server may have held it. User-interface thread only,
    /// as the next one.
    void repeat(const std::function<void()> &action, const std::function<void()> &whenHeld);

    /// Whether such an action is going on.
    bool isRepeating() const { return m_whenHeld; }

    const std::shared_ptr<MessageBus> &bus() const { return m_bus; }
    QuoteFeed &quoteFeed() { return *m_quoteFeed; }

private:
    Q_DISABLE_COPY(Terminal)

    Quote withOrders(Quote quote) const;
    void play(const QDateTime &time);
    void tellThatTimeMoved();

    const Login m_login;
    const QString m_station;
    SimulatedClock m_clock;
    Faults m_faults;
    Exchange m_exchange;
    const Accounts m_accounts;
    const std::shared_ptr<MessageBus> m_bus;
    TradeEvents m_tradeEvents;
    Alarm m_alarm; ///< for the messages of the desk, which checks it
    TradingDesk m_desk;
    StrategyPlatform m_strategies;
    OrderQuestion m_orderQuestion;
    const std::function<void()> *m_whenHeld = nullptr; ///< of what is repeated, or null
    std::atomic<quint64> m_heldCall{0};
    Agenda m_agenda{m_clock};
    OrderFlow m_flow;
    Control m_control;
    std::unique_ptr<QuoteFeed> m_quoteFeed; ///< last: its thread uses all of the above
};

} // namespace sim
