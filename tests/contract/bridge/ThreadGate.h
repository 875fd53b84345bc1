#pragma once

#include "ThreadLatch.h"

#include <QObject>
#include <QThread>

/// Blocks a thread between hold() and open(). Events that are posted to the thread meanwhile are handled after open(),
/// in their order. The thread sanitizer cannot see that Qt's event queue orders two threads; it sees the order made
/// here. Destroy it after the thread has ended.
class ThreadGate : public QObject {
    Q_OBJECT
public:
    void hold(QThread *thread)
    {
        moveToThread(thread);
        QMetaObject::invokeMethod(this, "pass", Qt::QueuedConnection);
    }

    void open() { m_latch.open(); }

private:
    Q_INVOKABLE void pass() { m_latch.wait(); }

    ThreadLatch m_latch;
};
