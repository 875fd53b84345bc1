#pragma once

#include "HostApi.h"
#include "exchange/Clock.h"

#include <QElapsedTimer>

#include <chrono>

namespace sim {

/// Exchange time that starts at a given time and runs at a given multiple of real time.
/// Constant after construction, so that any thread may use it.
class VARNEL_HOST_API SimulatedClock : public Clock {
public:
    SimulatedClock(const QDateTime &start, double speed);

    QDateTime now() const override;

    /// The same as a number, which costs much less.
    qint64 msecsSinceEpoch() const;

    /// How long to wait in real time until that exchange time: at most an hour, 0 when it has passed.
    std::chrono::milliseconds realTimeUntil(const QDateTime &time) const;

private:
    const QDateTime m_start;
    const qint64 m_startMsecs;
    const double m_speed;
    QElapsedTimer m_elapsed;
};

} // namespace sim
