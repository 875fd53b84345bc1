#pragma once

#include <QByteArray>
#include <QFile>
#include <QtGlobal>

#ifdef Q_OS_LINUX
#    include <unistd.h>

constexpr bool threadStatesCanBeRead = true;

inline int thisThread()
{
    return gettid();
}

/// Whether a thread of this process, by what it got from thisThread(), sleeps, as one does that waits for a lock.
inline bool threadSleeps(int thread)
{
    QFile state(QStringLiteral("/proc/self/task/%1/stat").arg(thread));
    return !state.open(QIODevice::ReadOnly) || state.readAll().split(' ').value(2) == "S";
}
#else
constexpr bool threadStatesCanBeRead = false;

inline int thisThread()
{
    return 0;
}

inline bool threadSleeps(int)
{
    return false;
}
#endif
