// The terminal must put here: its message bus.
#include "QvPresenterClass.h"

#include "CEventMessageCommon.h"
#include "CMessageCommon.h"

#include <atomic>

/// What the bus keeps about a presenter: here only its address.
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
    delete d;
}

int QvPresenterClass::pluginPid() const
{
    return d->pid;
}

void QvPresenterClass::SubEvent(int, const QVariant &, int) {}

void QvPresenterClass::PutEvent(int, CEventMessageCommon *event)
{
    delete event; // taken over, and delivered to nobody
}

int QvPresenterClass::sendRequest_Async(CMessageCommon *request)
{
    delete request;
    return -1; // not sent
}

int QvPresenterClass::sendRequest_Sync(CMessageCommon *request, QVariant &)
{
    delete request;
    return -1; // not sent
}

void QvPresenterClass::ProcEventMsg(QString, QVariant, QVariant) {}
void QvPresenterClass::ProcQuotationMsg(QString, QVariant, QVariant) {}
void QvPresenterClass::ProcAsyncCallBack(int, QString, QVariant, QVariant) {}
