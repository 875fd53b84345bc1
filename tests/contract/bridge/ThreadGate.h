#pragma once

#include "ThreadLatch.h"

#include <QObject>
#include <QThread>

/// Holds a thread back until open(): what is posted to the thread between hold() and open() is worked through after
/// open(), in order. The thread sanitizer does not see how Qt's event queue orders two threads; it sees this.
/// To be destroyed after the thread has ended.
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
