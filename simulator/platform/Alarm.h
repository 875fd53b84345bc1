#pragma once

#include "HostApi.h"

#include <QDateTime>

#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

namespace sim {

class SimulatedClock;

/// Rings when exchange time has reached the time that it is told, on a thread of its own.
/// Made and destroyed by the Terminal, which starts and stops it.
class VARNEL_HOST_API Alarm {
public:
    using NextTime = std::function<std::optional<QDateTime>()>;
    using Ring = std::function<void(const QDateTime &now)>;

    Alarm() = default;
    ~Alarm();

    /// next: when to ring; it is asked again after each ring. The clock must live until stop().
    void start(const SimulatedClock &clock, NextTime next, Ring ring);

    /// The next time may have changed. Any thread, also before the start and after the end.
    void check();

    /// Waits for the ring that is under way; none follows.
    void stop();

private:
    Q_DISABLE_COPY(Alarm)

    void run(const SimulatedClock &clock, const NextTime &next, const Ring &ring);

    // Guarded by m_mutex
    std::mutex m_mutex;
    std::condition_variable m_wake;
    bool m_mustCheck = false;
    bool m_stopping = false;

    std::thread m_thread;
};

} // namespace sim
