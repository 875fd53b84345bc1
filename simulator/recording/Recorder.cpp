#include "recording/Recorder.h"

#include "traffic/Log.h"

namespace sim {

namespace {

constexpr size_t kMaxWaiting = 100000;

} // namespace

Recorder::Recorder(const QString &fileName, const RecordingHead &head, FailureListener onFailure)
    : m_file(fileName), m_onFailure(std::move(onFailure))
{
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return;
    write(recordingLine(head));
    m_thread = std::thread([this] { run(); });
    m_listener = traffic::log().listen([this](const traffic::Entry &entry) { take(entry); });
}

Recorder::~Recorder()
{
    finish();
}

bool Recorder::finish()
{
    if (m_thread.joinable()) {
        traffic::log().leave(m_listener);
        {
            const std::lock_guard lock(m_mutex);
            m_finishing = true;
            m_wake.notify_all();
        }
        m_thread.join();
    }
    return !m_hasFailed;
}

void Recorder::take(const traffic::Entry &entry)
{
    std::unique_lock lock(m_mutex);
    m_wake.wait(lock, [this] { return m_waiting.size() < kMaxWaiting; });
    m_waiting.push_back(entry);
    m_wake.notify_all();
}

void Recorder::run()
{
    std::unique_lock lock(m_mutex);
    while (!m_finishing || !m_waiting.empty()) {
        m_wake.wait(lock, [this] { return m_finishing || !m_waiting.empty(); });
        std::vector<traffic::Entry> entries;
        entries.swap(m_waiting);
        m_wake.notify_all();
        lock.unlock();
        QByteArray lines;
        for (const traffic::Entry &entry : entries)
            lines += recordingLine(entry);
        write(lines);
        lock.lock();
    }
}

void Recorder::write(const QByteArray &lines)
{
    if (m_hasFailed)
        return;
    // Flushed at once: a simulator that is killed leaves what it has recorded.
    if (m_file.write(lines) == lines.size() && m_file.flush())
        return;
    m_hasFailed = true;
    m_onFailure(m_file.errorString());
}

} // namespace sim
