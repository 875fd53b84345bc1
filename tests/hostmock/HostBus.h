#pragma once

#include "HostApi.h"
#include "IMessageInterface.h"

#include <QList>
#include <QString>
#include <QVariant>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

class QObject;
class QThread;
class QvPresenterClass;

/// A presenter and the arguments of its constructor.
struct PresenterRecord {
    QvPresenterClass *presenter = nullptr;
    QString name;
    QObject *parent = nullptr;
    IMessageInterface::ThreadType threadType = {};
};

/// The calls of the bus into the presenter. They run on the calling thread.
class VARNEL_HOST_API HostBus {
public:
    static QList<PresenterRecord> presenters();

    /// The only presenter; aborts when there is none or more than one.
    static PresenterRecord presenter();

    static void deliverEvent(const QString &name, const QVariant &type, const QVariant &data);
    static void deliverQuotation(const QString &name, const QVariant &type, const QVariant &data);
    static void deliverAsyncCallBack(int id, const QString &name, const QVariant &type, const QVariant &data);
};

/// A thread of the host, for bus or quotes. It runs tasks in the order in which they were posted, without an event
/// loop.
class VARNEL_HOST_API BusThread {
public:
    BusThread();
    ~BusThread(); ///< waits until all posted tasks have run

    void post(std::function<void()> task);

    /// Waits until all posted tasks have run.
    void wait();

    /// post() and wait().
    void run(std::function<void()> task);

    /// QThread::currentThread() of the tasks.
    QThread *qtThread() const { return m_qtThread; }

private:
    Q_DISABLE_COPY(BusThread)
    void loop();

    QThread *m_qtThread = nullptr; // constant after construction
    std::mutex m_mutex;            // guards the tasks and the two flags
    std::condition_variable m_changed;
    std::deque<std::function<void()>> m_tasks;
    bool m_busy = false;
    bool m_stop = false;
    std::thread m_thread; // last: it uses all of the above
};
