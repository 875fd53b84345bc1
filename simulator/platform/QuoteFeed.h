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

/// Plays the exchange's quotes as time passes: tells each change of the quotes, and then how the streamed symbols
/// stand.
/// Made and destroyed by the Terminal on the user-interface thread; it has a thread of its own, which is the one that
/// both listeners are called on. Everything may be called from any thread.
/// It never makes up for what it missed: where time runs faster than it can tell or than the user-interface thread
/// works it through, changes are left out, for a quote is of no use once there is a later one.
class VARNEL_HOST_API QuoteFeed {
public:
    /// Hears when the quotes have changed, before the ticks of that change.
    using StepListener = std::function<void(const QDateTime &time)>;
    using TickListener = std::function<void(const Quote &quote)>;

    /// Exchange and clock must live until stop().
    QuoteFeed(const Exchange &exchange, const SimulatedClock &clock, StepListener onStep, TickListener onTick);
    ~QuoteFeed();

    /// Each symbol ticks at once, also one that is streamed already, and then whenever its quote changes. Unknown ones
    /// are left out.
    void stream(const QStringList &symbols);

    /// A tick that is under way may still come.
    void stopStreaming(const QStringList &symbols);

    /// Lets a call of a listener that is under way end; none follows.
    void stop();

private:
    using RealClock = std::chrono::steady_clock;

    void run();
    void tellStep(std::unique_lock<std::mutex> &lock);
    void tellTicks(std::unique_lock<std::mutex> &lock);
    RealClock::time_point nextStep() const;

    const Exchange &m_exchange;
    const SimulatedClock &m_clock;
    const StepListener m_onStep;
    const TickListener m_onTick;
    Wakeup m_digested; ///< behind the ticks in the queue of the thread that works them through

    // Thread of the feed only
    qint64 m_step; ///< the latest one told
    RealClock::time_point m_restsUntil;

    // Guarded by m_mutex
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::set<QString> m_streamed; ///< sorted, so that ticks come in the same order every time
    std::set<QString> m_due;      ///< of these, the ones that have a tick to come
    bool m_undigested = false;    ///< the latest ticks have not been worked through
    bool m_stopping = false;

    std::thread m_thread; ///< last: it uses all of the above
};

} // namespace sim
