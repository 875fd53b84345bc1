#pragma once

#include <QDateTime>

namespace sim {

/// The time at the exchange. All date-times of the simulator are exchange time with Qt::UTC as their zone: the exchange
/// has no summer time, and the developer's time zone must not matter.
class Clock {
public:
    virtual ~Clock() = default;

    /// Never goes back. Any thread.
    virtual QDateTime now() const = 0;
};

} // namespace sim
