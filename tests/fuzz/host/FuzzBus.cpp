// What the library hands over: events for views, messages for the bus.
#include "FuzzHost.h"

#include "CEventMessageCommon.h"
#include "CMessageCommon.h"
#include "QCefEvent.h"
#include "QCefView.h"
#include "QvPresenterClass.h"

#include <memory>

class QCefView::Private {};

QCefView::QCefView(QWidget *parent) : QWidget(parent), d(nullptr) {}

QCefView::~QCefView() = default;

bool QCefView::broadcastEvent(const QCefEvent &event)
{
    FuzzHost::received({this, event.eventName(), event.arguments()});
    return true;
}

class QvPresenterClass::Private {};

QvPresenterClass::QvPresenterClass(const QString &, QObject *parent, IMessageInterface::ThreadType)
    : QObject(parent), d(nullptr)
{
}

QvPresenterClass::~QvPresenterClass() = default;

int QvPresenterClass::pluginPid() const
{
    return 1;
}

void QvPresenterClass::SubEvent(int, const QVariant &, int) {}

void QvPresenterClass::PutEvent(int, CEventMessageCommon *event)
{
    const std::unique_ptr<CEventMessageCommon> owned(event);
    FuzzHost::sentToPlatform(owned->Msg());
}

int QvPresenterClass::sendRequest_Async(CMessageCommon *request)
{
    const std::unique_ptr<CMessageCommon> owned(request);
    FuzzHost::askedForCandles(owned->Msg());
    return 0;
}

int QvPresenterClass::sendRequest_Sync(CMessageCommon *request, QVariant &)
{
    delete request;
    return -1;
}

void QvPresenterClass::ProcEventMsg(QString, QVariant, QVariant) {}
void QvPresenterClass::ProcQuotationMsg(QString, QVariant, QVariant) {}
void QvPresenterClass::ProcAsyncCallBack(int, QString, QVariant, QVariant) {}
