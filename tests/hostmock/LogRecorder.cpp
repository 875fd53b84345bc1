#include "LogRecorder.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <iterator>

namespace {

// Held while a line is recorded, so that the recorder is not destroyed meanwhile.
std::mutex currentMutex;
LogRecorder *current = nullptr;

template <class Predicate>
QList<LogLine> filtered(const QList<LogLine> &lines, Predicate wanted)
{
    QList<LogLine> result;
    std::copy_if(lines.cbegin(), lines.cend(), std::back_inserter(result), wanted);
    return result;
}

} // namespace

LogRecorder::LogRecorder()
{
    const std::lock_guard<std::mutex> lock(currentMutex);
    if (current) {
        std::fputs("LogRecorder: a second one was created while the first is alive\n", stderr);
        std::abort();
    }
    current = this;
    m_previous = qInstallMessageHandler(handle);
}

LogRecorder::~LogRecorder()
{
    const std::lock_guard<std::mutex> lock(currentMutex);
    qInstallMessageHandler(m_previous);
    current = nullptr;
    if (testing::Test::HasFailure())
        print();
}

QList<LogLine> LogRecorder::lines() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_lines.mid(m_first);
}

QList<LogLine> LogRecorder::linesWith(const QString &fragment) const
{
    return filtered(lines(), [&](const LogLine &line) { return line.message.contains(fragment); });
}

QList<LogLine> LogRecorder::linesOfType(QtMsgType type) const
{
    return filtered(lines(), [&](const LogLine &line) { return line.type == type; });
}

void LogRecorder::clear()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_first = m_lines.size();
}

void LogRecorder::handle(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    const std::lock_guard<std::mutex> lock(currentMutex);
    if (!current) // logged between two recorders
        return;
    {
        const std::lock_guard<std::mutex> linesLock(current->m_mutex);
        current->m_lines.append({type, QString::fromUtf8(context.category), QString::fromUtf8(context.file),
                                 context.line, QString::fromUtf8(context.function), message});
    }
    if (type == QtFatalMsg) // Qt aborts when this returns
        current->print();
}

void LogRecorder::print() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (const LogLine &line : m_lines)
        std::fprintf(stderr, "%s: %s (%s:%d, %s)\n", qPrintable(line.category), qPrintable(line.message),
                     qPrintable(line.file), line.line, qPrintable(line.function));
}
