#include "traffic/Log.h"

#include "traffic/Scope.h"

#include <algorithm>

namespace sim::traffic {

namespace {

/// The calls whose later replies are recognised.
constexpr size_t kMaxCalls = 4096;

/// A longer one is not recognised in replies, so that the memory for them is bounded.
constexpr int kMaxUuid = 256;

constexpr qint64 kBytesOfEntry = 200;
constexpr qint64 kBytesOfField = 64;

qint64 bytesOf(const QVariant &value)
{
    if (value.userType() == QMetaType::QString)
        return value.toString().size() * qint64(sizeof(QChar));
    qint64 bytes = kBytesOfField;
    if (value.userType() == QMetaType::QVariantList) {
        const QVariantList list = value.toList();
        for (const QVariant &element : list)
            bytes += bytesOf(element);
    } else if (value.userType() == QMetaType::QVariantMap) {
        const QVariantMap map = value.toMap();
        for (const QVariant &field : map)
            bytes += kBytesOfField + bytesOf(field);
    }
    return bytes;
}

} // namespace

Log::Log(const Limits &limits) : m_limits(limits)
{
    m_clock.start();
}

quint64 Log::add(Entry entry)
{
    const qint64 bytes = kBytesOfEntry + bytesOf(entry.args);
    const std::lock_guard lock(m_mutex);
    entry.number = ++m_last;
    entry.time = now();
    if (m_exchangeClock)
        entry.exchangeTime = m_exchangeClock();
    link(entry);
    for (const auto &listener : m_listeners)
        listener.second(entry);
    const quint64 number = entry.number;
    keep(std::move(entry), bytes);
    return number;
}

void Log::link(Entry &entry)
{
    if (entry.call == 0)
        entry.call = CallScope::current();
    if (entry.kind == Entry::Call) {
        entry.call = entry.number;
        if (entry.uuid.isEmpty() || entry.uuid.size() > kMaxUuid)
            return;
        const QPair<int, QString> key(entry.page, entry.uuid);
        if (!m_calls.contains(key))
            m_callOrder.push_back(key);
        m_calls.insert(key, entry.number);
        if (m_callOrder.size() > kMaxCalls) {
            m_calls.remove(m_callOrder.front());
            m_callOrder.pop_front();
        }
    } else if (entry.call == 0 && entry.isReply) {
        entry.call = m_calls.value({entry.page, entry.uuid});
    }
}

void Log::keep(Entry entry, qint64 bytes)
{
    if (bytes > m_limits.bytes / 4) { // otherwise one very long text would leave nothing of what came before
        entry.args.clear();
        bytes = kBytesOfEntry;
    }
    m_kept.push_back({std::move(entry), bytes});
    m_bytes += bytes;
    while (!m_kept.empty() && (m_kept.size() > size_t(m_limits.entries) || m_bytes > m_limits.bytes)) {
        m_bytes -= m_kept.front().bytes;
        m_kept.pop_front();
    }
}

void Log::hostCall(const char *operation)
{
    if (!PageCall::isFirst(operation))
        return;
    Entry entry;
    entry.kind = Entry::HostCall;
    entry.name = QString::fromLatin1(operation);
    add(std::move(entry));
}

int Log::listen(Listener listener)
{
    const std::lock_guard lock(m_mutex);
    for (const Kept &kept : m_kept)
        listener(kept.entry);
    m_listeners.emplace_back(++m_lastListener, std::move(listener));
    return m_lastListener;
}

void Log::leave(int listener)
{
    const std::lock_guard lock(m_mutex);
    const auto isIt = [=](const auto &entry) { return entry.first == listener; };
    m_listeners.erase(std::remove_if(m_listeners.begin(), m_listeners.end(), isIt), m_listeners.end());
}

std::vector<Entry> Log::after(quint64 number, int count) const
{
    const std::lock_guard lock(m_mutex);
    std::vector<Entry> entries;
    if (m_kept.empty() || number >= m_last)
        return entries;
    const quint64 first = m_kept.front().entry.number;
    const size_t begin = number < first ? 0 : size_t(number - first + 1);
    const size_t end = std::min(m_kept.size(), begin + size_t(count));
    entries.reserve(end - begin);
    for (size_t i = begin; i < end; ++i)
        entries.push_back(m_kept[i].entry);
    return entries;
}

quint64 Log::oldest() const
{
    const std::lock_guard lock(m_mutex);
    return m_kept.empty() ? m_last + 1 : m_kept.front().entry.number;
}

void Log::setExchangeClock(std::function<qint64()> clock)
{
    const std::lock_guard lock(m_mutex);
    m_exchangeClock = std::move(clock);
}

Log &log()
{
    static auto *const log = new Log;
    return *log;
}

} // namespace sim::traffic
