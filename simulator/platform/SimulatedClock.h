#pragma once

#include "HostApi.h"
#include "exchange/Clock.h"
#include "platform/FrozenTime.h"

#include <QElapsedTimer>

#include <chrono>
#include <mutex>
#include <optional>

namespace sim {

/// Exchange time that starts at a given time and runs at a given multiple of real time. It can be made to stand still,
/// to wait at a limit, to pause and to change its speed. Any thread.
class VARNEL_HOST_API SimulatedClock : public Clock {
public:
    SimulatedClock(const QDateTime &start, double speed);

    /// Has the start as its limit if it stands.
    SimulatedClock(const QDateTime &start, double speed, bool stands);

    QDateTime now() const override;

    /// The same as a number, which costs much less.
    qint64 msecsSinceEpoch() const;

    /// How long to wait in real time until that exchange time: at most an hour, 0 when it has come.
    std::chrono::milliseconds realTimeUntil(const QDateTime &time) const;

    /// From now on time goes no further than this. A limit in the past is one of this moment.
    void setLimit(const QDateTime &limit);

    /// Time runs on from where it is.
    void liftLimit();

    /// Makes it that time at once, without passing the time before. Moves the limit there if it comes earlier. Does
    /// nothing when that time has come.
    void skipTo(const QDateTime &time);

    /// From now on time stands still, until it resumes. It can be made later meanwhile.
    void pause();
    void resume();
    bool isPaused() const;

    /// From now on time runs at that multiple of real time.
    void setSpeed(double speed);
    double speed() const;

    /// While it exists, time stands still for all threads. Afterwards it is as late as if it had not.
    class VARNEL_HOST_API Hold {
    public:
        explicit Hold(SimulatedClock &clock);
        ~Hold();

    private:
        Q_DISABLE_COPY(Hold)
        SimulatedClock &m_clock;
    };

    /// While it exists, time runs on in spite of the holds of this thread. They then stand at the time that it has got.
    class VARNEL_HOST_API Release {
    public:
        explicit Release(SimulatedClock &clock);
        ~Release();

    private:
        Q_DISABLE_COPY(Release)
        SimulatedClock &m_clock;
        const int m_holds;
    };

private:
    using Milliseconds = qint64; ///< of exchange time, since the start

    Milliseconds since(const QDateTime &time) const { return m_start.msecsTo(time); }

    // Called with the mutex held.
    double passed() const;
    void changeSpeed(double speed, bool isPaused);
    Milliseconds running() const;
    Milliseconds reached() const;

    const QDateTime m_start;
    const qint64 m_startMsecs;
    QElapsedTimer m_elapsed;

    // Guarded by m_mutex
    mutable std::mutex m_mutex;
    double m_speed;
    bool m_isPaused = false;
    qint64 m_speedSince = 0; ///< nanoseconds of real time at which the speed was changed
    double m_passed = 0;     ///< nanoseconds of exchange time that had passed by then
    Milliseconds m_skipped = 0;
    std::optional<Milliseconds> m_limit;
    Milliseconds m_heldAt = 0;
    int m_holds = 0;
};

} // namespace sim
