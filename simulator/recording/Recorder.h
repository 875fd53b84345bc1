#pragma once

#include "recording/Recording.h"
#include "traffic/Entry.h"

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace sim {

/// Writes a recording of this run, on a thread of its own. Nothing is left out: when a slow disk lets too much wait,
/// whoever adds to the log of the traffic waits too. When the file cannot be written to, the recording ends there and
/// the run goes on.
/// Made by main before the terminal, and destroyed after it; user-interface thread.
class Recorder {
public:
    /// The function is called at most once, on the recorder's thread, with why the file cannot be written to.
    using FailureListener = std::function<void(const QString &problem)>;

    /// Writes the head. On failure isOpen() says so, and errorString() why.
    Recorder(const QString &fileName, const RecordingHead &head, FailureListener onFailure);
    ~Recorder();

    bool isOpen() const { return m_file.isOpen(); }
    QString errorString() const { return m_file.errorString(); }

    /// Writes what still waits, and records nothing more. Returns whether everything was written.
    bool finish();

private:
    void take(const traffic::Entry &entry);
    void run();
    void write(const QByteArray &lines);

    QFile m_file; ///< the recorder's thread's while it runs
    const FailureListener m_onFailure;
    int m_listener = 0;
    std::atomic<bool> m_hasFailed{false};

    // Guarded by m_mutex
    std::mutex m_mutex;
    std::condition_variable m_wake; ///< there is something to write, or room
    std::vector<traffic::Entry> m_waiting;
    bool m_finishing = false;

    std::thread m_thread; ///< last: it uses all of the above
};

} // namespace sim
