#pragma once

#include "HostApi.h"

#include <QList>
#include <QMessageLogContext>
#include <QString>
#include <mutex>

/// One line of Qt's message logger.
struct LogLine {
    QtMsgType type = QtDebugMsg;
    QString category;
    QString file;
    int line = 0;
    QString function;
    QString message;
};

/// Records the log of all threads while it exists; only one can exist at a time. It prints the recorded lines only when
/// the test has failed, and at once when a message is fatal.
class VARNEL_HOST_API LogRecorder {
public:
    LogRecorder();
    ~LogRecorder();

    QList<LogLine> lines() const;
    QList<LogLine> linesWith(const QString &fragment) const; ///< whose message contains the text
    QList<LogLine> linesOfType(QtMsgType type) const;
    void clear();

private:
    Q_DISABLE_COPY(LogRecorder)
    static void handle(QtMsgType type, const QMessageLogContext &context, const QString &message);
    void print() const;

    QtMessageHandler m_previous = nullptr;
    mutable std::mutex m_mutex;
    QList<LogLine> m_lines; // guarded by m_mutex; all lines, for printing after a failure
    int m_first = 0;        // guarded by m_mutex; clear() moves it to the end
};
