#pragma once

#include "HostApi.h"
#include "exchange/Clock.h"

#include <QElapsedTimer>

#include <chrono>

namespace sim {

/// Exchange time that starts at a given moment and runs at a given multiple of real time.
/// Constant after construction: any thread may ask.
class VARNEL_HOST_API SimulatedClock : public Clock {
public:
    SimulatedClock(const QDateTime &start, double speed);

    QDateTime now() const override;

    /// How long to wait until it is that time, an hour at most; 0 when it is already.
    std::chrono::milliseconds realTimeUntil(const QDateTime &time) const;

private:
    const QDateTime m_start;
    const double m_speed;
    QElapsedTimer m_elapsed;
};

} // namespace sim
