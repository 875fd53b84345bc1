#pragma once

#include "HostApi.h"
#include "exchange/Clock.h"

#include <QElapsedTimer>

namespace sim {

/// Exchange time that starts at a given moment and runs at a given multiple of real time.
/// Constant after construction: any thread may ask.
class VARNEL_HOST_API SimulatedClock : public Clock {
public:
    SimulatedClock(const QDateTime &start, double speed);

    QDateTime now() const override;

private:
    const QDateTime m_start;
    const double m_speed;
    QElapsedTimer m_elapsed;
};

} // namespace sim
