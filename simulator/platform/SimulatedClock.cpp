#include "platform/SimulatedClock.h"

namespace sim {

SimulatedClock::SimulatedClock(const QDateTime &start, double speed) : m_start(start), m_speed(speed)
{
    m_elapsed.start();
}

QDateTime SimulatedClock::now() const
{
    return m_start.addMSecs(qint64(double(m_elapsed.elapsed()) * m_speed));
}

} // namespace sim
