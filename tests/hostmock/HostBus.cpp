#include "HostBus.h"

#include "HostMock.h"
#include "QvPresenterClass.h"

#include <QThread>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace {

struct PresenterLog {
    std::mutex mutex;
    QList<PresenterRecord> alive;
};

// Never destroyed: presenters may be statics themselves.
PresenterLog &presenterLog()
{
    static auto *const self = new PresenterLog;
    return *self;
}

} // namespace

// QvPresenterClass

QvPresenterClass::QvPresenterClass(const QString &name, QObject *parent, IMessageInterface::ThreadType threadType)
    : QObject(parent), d(nullptr)
{
    PresenterLog &log = presenterLog();
    const std::lock_guard<std::mutex> lock(log.mutex);
    log.alive.append({this, name, parent, threadType});
}

// Works without a mock, because it runs after main() for a static presenter.
QvPresenterClass::~QvPresenterClass()
{
    PresenterLog &log = presenterLog();
    const std::lock_guard<std::mutex> lock(log.mutex);
    const auto isThis = [this](const PresenterRecord &record) { return record.presenter == this; };
    log.alive.erase(std::remove_if(log.alive.begin(), log.alive.end(), isThis), log.alive.end());
}

int QvPresenterClass::pluginPid() const
{
    return HostMock::current(Q_FUNC_INFO).QvPresenterClass_pluginPid();
}

void QvPresenterClass::SubEvent(int pid, const QVariant &eventId, int mode)
{
    HostMock::current(Q_FUNC_INFO).QvPresenterClass_SubEvent(pid, eventId, mode);
}

void QvPresenterClass::PutEvent(int pid, CEventMessageCommon *event)
{
    HostMock::current(Q_FUNC_INFO).QvPresenterClass_PutEvent(pid, takeMessage(event));
}

int QvPresenterClass::sendRequest_Async(CMessageCommon *request)
{
    return HostMock::current(Q_FUNC_INFO).QvPresenterClass_sendRequest_Async(takeMessage(request));
}

int QvPresenterClass::sendRequest_Sync(CMessageCommon *request, QVariant &reply)
{
    return HostMock::current(Q_FUNC_INFO).QvPresenterClass_sendRequest_Sync(takeMessage(request), reply);
}

void QvPresenterClass::ProcEventMsg(QString, QVariant, QVariant) {}
void QvPresenterClass::ProcQuotationMsg(QString, QVariant, QVariant) {}
void QvPresenterClass::ProcAsyncCallBack(int, QString, QVariant, QVariant) {}

// HostBus

QList<PresenterRecord> HostBus::presenters()
{
    PresenterLog &log = presenterLog();
    const std::lock_guard<std::mutex> lock(log.mutex);
    return log.alive;
}

PresenterRecord HostBus::presenter()
{
    const QList<PresenterRecord> all = presenters();
    if (all.size() != 1) {
        std::fprintf(stderr, "HostBus: one presenter expected, there are %d\n", all.size());
        std::abort();
    }
    return all.first();
}

void HostBus::deliverEvent(const QString &name, const QVariant &type, const QVariant &data)
{
    presenter().presenter->ProcEventMsg(name, type, data);
}

void HostBus::deliverQuotation(const QString &name, const QVariant &type, const QVariant &data)
{
    presenter().presenter->ProcQuotationMsg(name, type, data);
}

void HostBus::deliverAsyncCallBack(int id, const QString &name, const QVariant &type, const QVariant &data)
{
    presenter().presenter->ProcAsyncCallBack(id, name, type, data);
}

// BusThread

BusThread::BusThread() : m_thread([this] { loop(); })
{
    run([this] { m_qtThread = QThread::currentThread(); });
}

BusThread::~BusThread()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stop = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

void BusThread::post(std::function<void()> task)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_tasks.push_back(std::move(task));
    }
    m_changed.notify_all();
}

void BusThread::wait()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_changed.wait(lock, [this] { return m_tasks.empty() && !m_busy; });
}

void BusThread::run(std::function<void()> task)
{
    post(std::move(task));
    wait();
}

void BusThread::loop()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [this] { return m_stop || !m_tasks.empty(); });
        if (m_tasks.empty())
            return;
        const std::function<void()> task = std::move(m_tasks.front());
        m_tasks.pop_front();
        m_busy = true;
        lock.unlock();
        task();
        lock.lock();
        m_busy = false;
        m_changed.notify_all();
    }
}
