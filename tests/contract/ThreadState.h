#pragma once

#include <QByteArray>
#include <QFile>

#include <unistd.h>

/// Whether a thread of this process, by what gettid() gave it, sleeps, as one does that waits for a lock. Linux only.
inline bool threadSleeps(pid_t thread)
{
    QFile state(QStringLiteral("/proc/self/task/%1/stat").arg(thread));
    return !state.open(QIODevice::ReadOnly) || state.readAll().split(' ').value(2) == "S";
}
