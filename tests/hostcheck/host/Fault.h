#pragma once

#include <QCoreApplication>
#include <QThread>
#include <QtGlobal>

/// Whether the host has this fault: the environment variable VARNEL_HOST_FAULT names at most one. Without it the host
/// is sound.
inline bool hasFault(const char *fault)
{
    static const QByteArray chosen = qgetenv("VARNEL_HOST_FAULT");
    return chosen == fault;
}

inline bool isUserInterfaceThread()
{
    return QThread::currentThread() == QCoreApplication::instance()->thread();
}

/// Waits until the user-interface thread has turned its event loop. On that thread itself it does nothing.
inline void askTheUserInterface()
{
    if (!isUserInterfaceThread())
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), [] {}, Qt::BlockingQueuedConnection);
}

/// Whether the host has the fault that it only answers on the user-interface thread, and this is another thread.
inline bool isLostOnThisThread(const char *fault)
{
    return hasFault(fault) && !isUserInterfaceThread();
}
