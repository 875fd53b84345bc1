#include "Bus.h"

#include "CEventMessageCommon.h"
#include "CMessageCommon.h"
#include "Fault.h"
#include "NotForJson.h"
#include "Orlo_Keys.h"
#include "QvPresenterClass.h"
#include "Tessar_Fields.h"
#include "VarnelBusinessDataInterface.h"

#include <atomic>
#include <cstdlib>
#include <future>
#include <memory>
#include <thread>

// Bus

Bus &Bus::instance()
{
    static auto *const bus = new Bus;
    return *bus;
}

Bus::Bus()
{
    std::thread([this] { run(); }).detach();
}

void Bus::run()
{
    for (;;) {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return !m_functions.empty(); });
        const std::function<void()> function = std::move(m_functions.front());
        m_functions.pop_front();
        lock.unlock();
        function();
    }
}

int Bus::join(QvPresenterClass *presenter)
{
    const std::lock_guard lock(m_mutex);
    m_presenters.insert(++m_lastPid, presenter);
    return m_lastPid;
}

void Bus::leave(int pid)
{
    std::unique_lock lock(m_mutex);
    m_presenters.remove(pid);
    m_changed.wait(lock, [&] { return m_calling != pid; });
}

void Bus::subscribe(int pid, int eventId)
{
    const std::lock_guard lock(m_mutex);
    m_subscribers[eventId].append(pid);
}

void Bus::post(const std::function<void()> &function)
{
    const std::lock_guard lock(m_mutex);
    m_functions.push_back(function);
    m_changed.notify_all();
}

void Bus::call(int pid, const Call &call)
{
    std::unique_lock lock(m_mutex);
    QvPresenterClass *const presenter = m_presenters.value(pid);
    if (!presenter)
        return;
    m_calling = pid;
    lock.unlock();
    call(*presenter);
    lock.lock();
    m_calling = 0;
    m_changed.notify_all();
}

void Bus::publish(int eventId, const QVariant &body)
{
    const auto deliver = [eventId, body](QvPresenterClass &presenter) {
        const QString sender = QStringLiteral("host");
        const QVariant type = hasFault("EventTypeLost") ? QVariant(sender) : QVariant(eventId);
        const QVariant data = hasFault("EventBodyLost") ? QVariant() : body;
        if (hasFault("EventsCallQuotation"))
            presenter.ProcQuotationMsg(sender, type, data);
        else
            presenter.ProcEventMsg(sender, type, data);
        if (hasFault("EventsTwice"))
            presenter.ProcEventMsg(sender, type, data);
    };
    QVector<int> receivers;
    QVector<QvPresenterClass *> pointers;
    {
        const std::lock_guard lock(m_mutex);
        receivers = m_subscribers.value(eventId);
        for (const int pid : qAsConst(receivers))
            pointers.append(m_presenters.value(pid));
    }
    // Not with the events of the library's own presenter: it ends with the process, so that any check could crash.
    const bool callsEnded = eventId == kStrategyCalls && hasFault("CallsEndedPresenters");
    post([=] {
        if (eventId == kStrategyCalls)
            takeStrategyCall(unpacked(body));
        for (int i = 0; i < receivers.size(); ++i) {
            if (callsEnded && pointers[i])
                deliver(*pointers[i]);
            else
                call(receivers[i], deliver);
        }
    });
}

// QvPresenterClass

namespace {

/// Deletes a message that the bus was given. With the fault it is only kept, and never used again.
template <typename Message>
void dispose(Message *message, const char *fault)
{
    static auto *const kept = new QVector<Message *>;
    if (hasFault(fault))
        kept->append(message);
    else
        delete message;
}

} // namespace

class QvPresenterClass::Private {
public:
    const int pid;
    int sentEvents = 0;
    std::function<void()> held; ///< with a fault: an event that waits for the next one
};

QvPresenterClass::QvPresenterClass(const QString &, QObject *parent, IMessageInterface::ThreadType)
    : QObject(parent), d(new Private{Bus::instance().join(this), 0, {}})
{
}

QvPresenterClass::~QvPresenterClass()
{
    if (hasFault("EndCrashes") && !QCoreApplication::instance())
        std::abort();
    Bus::instance().leave(d->pid);
    delete d;
}

int QvPresenterClass::pluginPid() const
{
    if (hasFault("SameAddresses"))
        return 1;
    return isLostOnThisThread("OtherAddressOnOtherThreads") ? -d->pid : d->pid;
}

void QvPresenterClass::SubEvent(int, const QVariant &eventId, int)
{
    Bus::instance().subscribe(d->pid, eventId.toInt());
}

void QvPresenterClass::PutEvent(int, CEventMessageCommon *event)
{
    const auto publish = [id = event->Type().toInt(), body = event->Msg()] { Bus::instance().publish(id, body); };
    dispose(event, "EventsLeak");
    if (hasFault("EventsLost"))
        return;
    if (hasFault("EventsOutOfOrder") && d->sentEvents++ % 2 == 1) {
        d->held = publish; // every second event goes behind the next one
        return;
    }
    publish();
    if (const std::function<void()> held = std::exchange(d->held, nullptr))
        held();
}

namespace {

constexpr int kSent = 0;
constexpr int kRefused = -1;

QVariantList candles(const QVariantMap &request)
{
    const QString id = Tessar_Fields::System::clientMsgID;
    QVariantMap candle{{QStringLiteral("close"), 18.36}};
    if (!hasFault("KLineAnswerWithoutId"))
        candle.insert(id, request.value(id));
    if (hasFault("CandlesNotForJson"))
        candle.insert(QStringLiteral("extra"), QVariant::fromValue(NotForJson()));
    return {candle, candle};
}

/// With the fault the list has a type that the library reads as an empty list.
QVariant listOf(const QVariantList &candles, const char *fault)
{
    if (!hasFault(fault))
        return candles;
    QList<QVariantMap> maps;
    for (const QVariant &candle : candles)
        maps.append(candle.toMap());
    return QVariant::fromValue(maps);
}

bool isServed(const CMessageCommon &request)
{
    return request.Type() == QVariant(QStringLiteral("KLineRequest"));
}

} // namespace

int QvPresenterClass::sendRequest_Async(CMessageCommon *request)
{
    const bool isTaken = isServed(*request) && !isLostOnThisThread("RequestsLostOnOtherThreads");
    const QVariantMap fields = unpacked(request->Msg());
    dispose(request, "RequestsLeak");
    if (!isTaken)
        return kRefused;
    const auto deliver = [fields](QvPresenterClass &presenter) {
        const QString name = QStringLiteral("host");
        const QVariant type = hasFault("KLineAnswerOfOtherType") ? name : QStringLiteral("KLineResponse");
        const QVariant data = listOf(candles(fields), "KLineAnswerInOtherList");
        if (hasFault("KLineAnswerCallsAsyncCallBack"))
            presenter.ProcAsyncCallBack(0, name, type, data);
        else
            presenter.ProcQuotationMsg(name, type, data);
    };
    if (hasFault("NoKLineAnswer"))
        return kSent;
    if (hasFault("KLineAnswerInsideTheCall")) {
        deliver(*this);
        return kSent;
    }
    const auto isDelivered = std::make_shared<std::promise<void>>();
    Bus::instance().post([pid = d->pid, deliver, isDelivered] {
        Bus::instance().call(pid, deliver);
        isDelivered->set_value();
    });
    if (hasFault("SendingWaits"))
        isDelivered->get_future().wait();
    return kSent;
}

int QvPresenterClass::sendRequest_Sync(CMessageCommon *request, QVariant &reply)
{
    if (hasFault("SyncRequestsNeedTheUserInterface"))
        askTheUserInterface();
    const bool isTaken = isServed(*request) && !hasFault("NoSyncAnswer");
    const QVariantMap fields = unpacked(request->Msg());
    dispose(request, "SyncRequestsLeak");
    if (!isTaken)
        return kRefused;
    reply = listOf(candles(fields), "SyncAnswerInOtherList");
    return kSent;
}

void QvPresenterClass::ProcEventMsg(QString, QVariant, QVariant) {}
void QvPresenterClass::ProcQuotationMsg(QString, QVariant, QVariant) {}
void QvPresenterClass::ProcAsyncCallBack(int, QString, QVariant, QVariant) {}
