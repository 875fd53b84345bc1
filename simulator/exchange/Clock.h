#pragma once

#include <QDateTime>

namespace sim {

/// What time it is at the exchange. All of the simulator's date-times are exchange time written with Qt::UTC:
/// the exchange keeps no summer time, and the zone of the developer's machine must not matter.
class Clock {
public:
    virtual ~Clock() = default;

    /// Never goes back. Called from any thread.
    virtual QDateTime now() const = 0;
};

} // namespace sim
