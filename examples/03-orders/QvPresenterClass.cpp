// A participant of the bus. It publishes events and subscribes to them. Nobody answers its requests yet.
#include "QvPresenterClass.h"

#include "Bus.h"
#include "CEventMessageCommon.h"
#include "CMessageCommon.h"

#include <atomic>
#include <memory>

/// What the bus keeps about a presenter: its address.
class QvPresenterClass::Private {
public:
    const int pid;
};

QvPresenterClass::QvPresenterClass(const QString &, QObject *parent, IMessageInterface::ThreadType)
    : QObject(parent), d([] {
        static std::atomic<int> lastPid{0};
        return new Private{++lastPid};
    }())
{
}

QvPresenterClass::~QvPresenterClass()
{
    Bus::instance().leave(this);
    delete d;
}

int QvPresenterClass::pluginPid() const
{
    return d->pid;
}

void QvPresenterClass::SubEvent(int, const QVariant &eventId, int)
{
    Bus::instance().subscribe(this, eventId.toInt());
}

void QvPresenterClass::PutEvent(int, CEventMessageCommon *event)
{
    const std::unique_ptr<CEventMessageCommon> taken(event); // the bus owns what it is given
    Bus::instance().publish(taken->Type().toInt(), taken->Msg());
}

int QvPresenterClass::sendRequest_Async(CMessageCommon *request)
{
    delete request;
    return -1;
}

int QvPresenterClass::sendRequest_Sync(CMessageCommon *request, QVariant &)
{
    delete request;
    return -1;
}

void QvPresenterClass::ProcEventMsg(QString, QVariant, QVariant) {}
void QvPresenterClass::ProcQuotationMsg(QString, QVariant, QVariant) {}
void QvPresenterClass::ProcAsyncCallBack(int, QString, QVariant, QVariant) {}
