#include "platform/SimulatedClock.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace sim {

namespace {

constexpr std::chrono::milliseconds kHour = std::chrono::hours(1);
constexpr double kNanosecondsPerMillisecond = 1e6;

} // namespace

SimulatedClock::SimulatedClock(const QDateTime &start, double speed)
    : m_start(start), m_startMsecs(start.toMSecsSinceEpoch()), m_speed(speed)
{
    m_elapsed.start();
}

SimulatedClock::SimulatedClock(const QDateTime &start, double speed, bool stands) : SimulatedClock(start, speed)
{
    if (stands)
        m_limit = 0;
}

QDateTime SimulatedClock::now() const
{
    if (const QDateTime *const frozen = FrozenTime::current())
        return *frozen;
    const std::lock_guard lock(m_mutex);
    return m_start.addMSecs(reached());
}

qint64 SimulatedClock::msecsSinceEpoch() const
{
    if (const QDateTime *const frozen = FrozenTime::current())
        return frozen->toMSecsSinceEpoch();
    const std::lock_guard lock(m_mutex);
    return m_startMsecs + reached();
}

std::chrono::milliseconds SimulatedClock::realTimeUntil(const QDateTime &time) const
{
    const std::lock_guard lock(m_mutex);
    const Milliseconds wanted = since(time);
    if (wanted <= reached())
        return std::chrono::milliseconds(0);
    if (m_isPaused || (m_limit && wanted > *m_limit))
        return kHour; // until time runs on, of which whoever waits is told
    const double wait = std::ceil(double(wanted - running()) / m_speed);
    // At least a moment: while time stands still, that time does not come when it is due.
    return std::chrono::milliseconds(qint64(qBound(1.0, wait, double(kHour.count()))));
}

void SimulatedClock::setLimit(const QDateTime &limit)
{
    const std::lock_guard lock(m_mutex);
    m_limit = std::max(since(limit), reached());
}

void SimulatedClock::liftLimit()
{
    const std::lock_guard lock(m_mutex);
    if (m_limit)
        m_skipped += std::min(running(), *m_limit) - running();
    m_limit.reset();
}

void SimulatedClock::skipTo(const QDateTime &time)
{
    const std::lock_guard lock(m_mutex);
    const Milliseconds wanted = since(time);
    m_skipped += std::max(Milliseconds(0), wanted - running());
    if (m_limit)
        m_limit = std::max(*m_limit, wanted);
}

void SimulatedClock::pause()
{
    const std::lock_guard lock(m_mutex);
    changeSpeed(m_speed, true);
}

void SimulatedClock::resume()
{
    const std::lock_guard lock(m_mutex);
    changeSpeed(m_speed, false);
}

bool SimulatedClock::isPaused() const
{
    const std::lock_guard lock(m_mutex);
    return m_isPaused;
}

void SimulatedClock::setSpeed(double speed)
{
    const std::lock_guard lock(m_mutex);
    changeSpeed(speed, m_isPaused);
}

double SimulatedClock::speed() const
{
    const std::lock_guard lock(m_mutex);
    return m_speed;
}

void SimulatedClock::changeSpeed(double speed, bool isPaused)
{
    m_passed = passed();
    m_speedSince = m_elapsed.nsecsElapsed();
    m_speed = speed;
    m_isPaused = isPaused;
}

double SimulatedClock::passed() const
{
    return m_isPaused ? m_passed : m_passed + double(m_elapsed.nsecsElapsed() - m_speedSince) * m_speed;
}

SimulatedClock::Milliseconds SimulatedClock::running() const
{
    return Milliseconds(passed() / kNanosecondsPerMillisecond) + m_skipped;
}

SimulatedClock::Milliseconds SimulatedClock::reached() const
{
    if (m_holds > 0)
        return m_heldAt;
    return m_limit ? std::min(running(), *m_limit) : running();
}

SimulatedClock::Hold::Hold(SimulatedClock &clock) : m_clock(clock)
{
    const std::lock_guard lock(m_clock.m_mutex);
    m_clock.m_heldAt = m_clock.reached();
    ++m_clock.m_holds;
}

SimulatedClock::Hold::~Hold()
{
    const std::lock_guard lock(m_clock.m_mutex);
    --m_clock.m_holds;
}

SimulatedClock::Release::Release(SimulatedClock &clock)
    : m_clock(clock), m_holds([&clock] {
        const std::lock_guard lock(clock.m_mutex);
        return std::exchange(clock.m_holds, 0);
    }())
{
}

SimulatedClock::Release::~Release()
{
    const std::lock_guard lock(m_clock.m_mutex);
    m_clock.m_heldAt = m_clock.reached();
    m_clock.m_holds += m_holds;
}

} // namespace sim
