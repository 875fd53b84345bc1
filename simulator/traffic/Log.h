#pragma once

#include "HostApi.h"
#include "traffic/Entry.h"

#include <QElapsedTimer>
#include <QHash>

#include <deque>
#include <functional>
#include <mutex>
#include <vector>

namespace sim::traffic {

/// What passes between pages, library and terminal, in order. It keeps the latest entries, so that a reader who comes
/// late sees what came before, and tells listeners of new ones. Any thread.
class VARNEL_HOST_API Log {
public:
    struct Limits { ///< of what is kept
        int entries = 20000;
        qint64 bytes = qint64{32} * 1024 * 1024; ///< of texts, counted roughly
    };

    /// Hears each entry in order, on the thread that adds it. It must only hand the entry on: other threads wait
    /// meanwhile, and calling the log would wait for ever.
    using Listener = std::function<void(const Entry &)>;

    Log() : Log(Limits()) {}
    explicit Log(const Limits &limits);

    /// Sets number, times and call. Returns the entry's number.
    quint64 add(Entry entry);

    /// µs since the log began: the clock of the entries.
    qint64 now() const { return m_clock.nsecsElapsed() / 1000; }

    /// The library has called an operation of the host. The name must be a literal.
    void hostCall(const char *operation);

    /// The listener first hears the kept entries. Returns a number for leave().
    int listen(Listener listener);

    /// After that the listener is not called any more.
    void leave(int listener);

    /// The kept entries after that number, the oldest first, at most so many.
    std::vector<Entry> after(quint64 number, int count) const;

    /// The number of the oldest kept entry, or of the next one when none is kept.
    quint64 oldest() const;

    /// What exchangeTime says. Without one it is 0.
    void setExchangeClock(std::function<qint64()> clock);

private:
    struct Kept {
        Entry entry;
        qint64 bytes;
    };

    void link(Entry &entry);
    void keep(Entry entry, qint64 bytes);

    const Limits m_limits;
    QElapsedTimer m_clock;

    // Guarded by m_mutex
    mutable std::mutex m_mutex;
    std::function<qint64()> m_exchangeClock;
    quint64 m_last = 0;
    std::deque<Kept> m_kept;
    qint64 m_bytes = 0;
    std::deque<std::pair<int, Listener>> m_listeners;
    int m_lastListener = 0;
    QHash<QPair<int, QString>, quint64> m_calls; ///< page and uuid to the number of the call
    std::deque<QPair<int, QString>> m_callOrder; ///< the keys of m_calls, the oldest first
};

/// The log of this process. It is never destroyed, because the library's singletons call the host until the end.
VARNEL_HOST_API Log &log();

} // namespace sim::traffic
