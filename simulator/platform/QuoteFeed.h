#pragma once

#include "HostApi.h"
#include "exchange/Exchange.h"
#include "platform/Wakeup.h"

#include <QStringList>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <set>
#include <thread>

namespace sim {

class SimulatedClock;

/// Reports each step of the exchange as its time comes, followed by the quotes of the streamed symbols (ticks).
/// Made and destroyed by the Terminal on the user-interface thread. It calls both listeners on a thread of its own. Its
/// functions may be called from any thread.
/// When time runs faster than the listeners or the user-interface thread can follow, it skips steps and ticks: a later
/// quote replaces an earlier one.
class VARNEL_HOST_API QuoteFeed {
public:
    /// Called at each step, before its ticks.
    using StepListener = std::function<void(const QDateTime &time)>;
    using TickListener = std::function<void(const Quote &quote)>;

    /// Exchange and clock must live until stop().
    QuoteFeed(const Exchange &exchange, const SimulatedClock &clock, StepListener onStep, TickListener onTick);
    ~QuoteFeed();

    /// Sends one tick of each symbol at once, also of one that is streamed already, and then one at each step. Unknown
    /// symbols are ignored.
    void stream(const QStringList &symbols);

    /// A tick that is being sent may still arrive.
    void stopStreaming(const QStringList &symbols);

    /// To be called when the clock's time, limit or speed was changed.
    void timeMoved();

    /// Waits for the current call of a listener; no call follows.
    void stop();

private:
    using RealClock = std::chrono::steady_clock;

    void run();
    void reportStep(std::unique_lock<std::mutex> &lock);
    void sendTicks(std::unique_lock<std::mutex> &lock);
    RealClock::time_point nextStep() const;

    const Exchange &m_exchange;
    const SimulatedClock &m_clock;
    const StepListener m_onStep;
    const TickListener m_onTick;
    Wakeup m_acknowledged; ///< queued after the ticks: runs when the user-interface thread has handled them

    // Used on the feed's thread only
    qint64 m_step; ///< the latest one reported
    RealClock::time_point m_pausedUntil;

    // Guarded by m_mutex
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::set<QString> m_streamed;  ///< sorted, so that ticks come in the same order every time
    std::set<QString> m_due;       ///< the streamed symbols whose tick has not been sent yet
    bool m_unacknowledged = false; ///< the user-interface thread has not handled the latest ticks
    bool m_stopping = false;

    std::thread m_thread; ///< last: it uses all of the above
};

} // namespace sim
