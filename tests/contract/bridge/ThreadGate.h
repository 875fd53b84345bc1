#pragma once

#include <QObject>
#include <QThread>

#include <condition_variable>
#include <mutex>

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

    void open()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_open = true;
        m_opened.notify_all();
    }

private:
    Q_INVOKABLE void pass()
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_opened.wait(lock, [this] { return m_open; });
    }

    std::mutex m_mutex;
    std::condition_variable m_opened;
    bool m_open = false; // guarded by m_mutex
};
