// A participant of the bus. It subscribes to events; nobody takes its own events and requests yet.
#include "QvPresenterClass.h"

#include "Bus.h"
#include "CEventMessageCommon.h"
#include "CMessageCommon.h"

/// What the bus keeps about a presenter: nothing, because this terminal has only one.
class QvPresenterClass::Private {};

QvPresenterClass::QvPresenterClass(const QString &, QObject *parent, IMessageInterface::ThreadType)
    : QObject(parent), d(new Private)
{
}

QvPresenterClass::~QvPresenterClass()
{
    delete d;
}

int QvPresenterClass::pluginPid() const
{
    return 1;
}

void QvPresenterClass::SubEvent(int, const QVariant &eventId, int)
{
    Bus::instance().subscribe(this, eventId.toInt());
}

void QvPresenterClass::PutEvent(int, CEventMessageCommon *event)
{
    delete event; // the bus owns what it is given
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
