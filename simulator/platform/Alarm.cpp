#include "platform/Alarm.h"

#include "platform/SimulatedClock.h"

namespace sim {

Alarm::~Alarm()
{
    stop();
}

void Alarm::start(const SimulatedClock &clock, NextTime next, Ring ring)
{
    m_thread = std::thread([this, &clock, next = std::move(next), ring = std::move(ring)] { run(clock, next, ring); });
}

void Alarm::check()
{
    const std::lock_guard lock(m_mutex);
    m_mustCheck = true;
    m_wake.notify_all();
}

void Alarm::stop()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stopping = true;
        m_wake.notify_all();
    }
    if (m_thread.joinable())
        m_thread.join();
}

void Alarm::run(const SimulatedClock &clock, const NextTime &next, const Ring &ring)
{
    std::unique_lock lock(m_mutex);
    const auto isWoken = [this] { return m_mustCheck || m_stopping; };
    while (!m_stopping) {
        m_mustCheck = false;
        lock.unlock(); // the functions may lead to check()
        const std::optional<QDateTime> time = next();
        const QDateTime now = clock.now();
        const bool isDue = time && *time <= now;
        if (isDue)
            ring(now);
        lock.lock();
        if (isDue)
            continue;
        if (time)
            m_wake.wait_for(lock, clock.realTimeUntil(*time), isWoken);
        else
            m_wake.wait(lock, isWoken);
    }
}

} // namespace sim
