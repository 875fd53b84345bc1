#include "platform/SimulatedClock.h"

#include <cmath>

namespace sim {

namespace {

constexpr double kHourMs = 60 * 60 * 1000;

} // namespace

SimulatedClock::SimulatedClock(const QDateTime &start, double speed)
    : m_start(start), m_startMsecs(start.toMSecsSinceEpoch()), m_speed(speed)
{
    m_elapsed.start();
}

QDateTime SimulatedClock::now() const
{
    return m_start.addMSecs(qint64(double(m_elapsed.elapsed()) * m_speed));
}

qint64 SimulatedClock::msecsSinceEpoch() const
{
    return m_startMsecs + qint64(double(m_elapsed.elapsed()) * m_speed);
}

std::chrono::milliseconds SimulatedClock::realTimeUntil(const QDateTime &time) const
{
    const double wait = std::ceil(double(now().msecsTo(time)) / m_speed);
    return std::chrono::milliseconds(qint64(qBound(0.0, wait, kHourMs)));
}

} // namespace sim
