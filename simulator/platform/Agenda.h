#pragma once

#include "HostApi.h"

#include <QDateTime>

#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <thread>

namespace sim {

class SimulatedClock;

/// What is to happen at given exchange times, in their order. It happens on a thread of its own when its time comes, or
/// earlier on the thread of somebody who needs the world as of that time: never twice, and one after the other. So what
/// a call answers does not depend on which thread was faster.
/// Everything may be called from any thread. An action may add others.
class VARNEL_HOST_API Agenda {
public:
    /// Called with the time for which it was entered.
    using Action = std::function<void(const QDateTime &time)>;

    /// The clock must live until stop().
    explicit Agenda(const SimulatedClock &clock);
    ~Agenda();

    /// Those of the same time happen in the order in which they were entered.
    void enter(const QDateTime &time, Action action);

    /// Does everything up to that time. From an action it does nothing: what is due then happens after the action.
    void playUntil(const QDateTime &time);

    /// Does it on the agenda's thread as soon as possible, at the exchange time of that moment and after everything up
    /// to it. While somebody holds the agenda, it waits.
    void soon(Action action);

    /// While it exists, no action begins, and whoever plays waits. It first waits for the current one. Not from an
    /// action.
    class Standstill {
    public:
        explicit Standstill(Agenda &agenda) : m_lock(agenda.m_playing) {}

    private:
        Q_DISABLE_COPY(Standstill)
        const std::lock_guard<std::mutex> m_lock;
    };

    /// While it exists, nothing is done soon. It first waits for what is being done. Not from an action.
    class VARNEL_HOST_API Hold {
    public:
        explicit Hold(Agenda &agenda);
        ~Hold();

    private:
        Q_DISABLE_COPY(Hold)
        Agenda &m_agenda;
    };

    /// While it exists, the holds of this thread do not count. At its end it waits for what is being done.
    class VARNEL_HOST_API Release {
    public:
        explicit Release(Agenda &agenda);
        ~Release();

    private:
        Q_DISABLE_COPY(Release)
        Agenda &m_agenda;
        const int m_holds;
    };

    /// To be called when the clock's time or speed was changed.
    void timeMoved();

    /// Waits for the current action; none follows.
    void stop();

private:
    void run();
    void changeHolds(int by);
    Action takeUntil(const QDateTime &time, QDateTime &due);

    const SimulatedClock &m_clock;
    std::mutex m_playing; ///< held during actions; taken before m_mutex

    // Guarded by m_mutex
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::multimap<QDateTime, Action> m_entries;
    std::deque<Action> m_soon;
    std::thread::id m_player; ///< the thread that holds m_playing
    int m_holds = 0;
    bool m_isStopping = false;

    std::thread m_thread; ///< last: it uses all of the above
};

} // namespace sim
