#include "platform/Agenda.h"

#include "platform/SimulatedClock.h"

namespace sim {

Agenda::Agenda(const SimulatedClock &clock) : m_clock(clock)
{
    m_thread = std::thread([this] { run(); });
}

Agenda::~Agenda()
{
    stop();
}

void Agenda::enter(const QDateTime &time, Action action)
{
    const std::lock_guard lock(m_mutex);
    m_entries.emplace(time, std::move(action));
    m_wake.notify_all();
}

void Agenda::soon(Action action)
{
    const std::lock_guard lock(m_mutex);
    m_soon.push_back(std::move(action));
    m_wake.notify_all();
}

/// The next action that is due; none when there is none.
Agenda::Action Agenda::takeUntil(const QDateTime &time, QDateTime &due)
{
    const std::lock_guard lock(m_mutex);
    if (m_isStopping || m_entries.empty() || m_entries.begin()->first > time)
        return {};
    due = m_entries.begin()->first;
    Action action = std::move(m_entries.begin()->second);
    m_entries.erase(m_entries.begin());
    return action;
}

void Agenda::playUntil(const QDateTime &time)
{
    {
        const std::lock_guard lock(m_mutex);
        if (m_player == std::this_thread::get_id())
            return;
        if (m_player == std::thread::id() && (m_entries.empty() || m_entries.begin()->first > time))
            return; // the usual case
    }
    const std::lock_guard playing(m_playing);
    const auto setPlayer = [this](std::thread::id player) {
        const std::lock_guard lock(m_mutex);
        m_player = player;
    };
    setPlayer(std::this_thread::get_id());
    QDateTime due;
    while (const Action action = takeUntil(time, due)) {
        const FrozenTime frozen(due); // what it makes the terminal announce depends on that time alone
        action(due);
    }
    setPlayer({});
}

void Agenda::timeMoved()
{
    const std::lock_guard lock(m_mutex);
    m_wake.notify_all();
}

/// Holds that begin wait for what was begun before, because it may move the time.
void Agenda::changeHolds(int by)
{
    {
        const std::lock_guard lock(m_mutex);
        m_holds += by;
        m_wake.notify_all();
    }
    if (by > 0)
        playUntil(m_clock.now());
}

void Agenda::stop()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isStopping = true;
        m_wake.notify_all();
    }
    if (m_thread.joinable())
        m_thread.join();
}

void Agenda::run()
{
    std::unique_lock lock(m_mutex);
    while (!m_isStopping) {
        if (!m_soon.empty() && m_holds == 0) {
            // The order of the entries settles what comes first: what is due by now, and then this. The action may move
            // the time, so the next one has another.
            const QDateTime now = m_clock.now();
            m_entries.emplace(now, std::move(m_soon.front()));
            m_soon.pop_front();
            lock.unlock();
            playUntil(now);
            lock.lock();
        } else if (!m_entries.empty() && m_entries.begin()->first <= m_clock.now()) {
            const QDateTime now = m_clock.now();
            lock.unlock();
            playUntil(now);
            lock.lock();
        } else if (m_entries.empty()) {
            m_wake.wait(lock);
        } else {
            m_wake.wait_for(lock, m_clock.realTimeUntil(m_entries.begin()->first));
        }
    }
}

Agenda::Hold::Hold(Agenda &agenda) : m_agenda(agenda)
{
    m_agenda.changeHolds(1);
}

Agenda::Hold::~Hold()
{
    m_agenda.changeHolds(-1);
}

Agenda::Release::Release(Agenda &agenda)
    : m_agenda(agenda), m_holds([&agenda] {
        const std::lock_guard lock(agenda.m_mutex);
        return agenda.m_holds;
    }())
{
    m_agenda.changeHolds(-m_holds);
}

Agenda::Release::~Release()
{
    m_agenda.changeHolds(m_holds);
}

} // namespace sim
