#pragma once

#include "HostApi.h"
#include "IMessageInterface.h"

#include <QObject>
#include <QString>
#include <QVariant>

class CEventMessageCommon;
class CMessageCommon;

/// One participant of the host's message bus; the library's message center derives from it.
class VARNEL_HOST_API QvPresenterClass : public QObject {
    Q_OBJECT
public:
    /// The name is the presenter's identity on the bus.
    QvPresenterClass(const QString &name, QObject *parent, IMessageInterface::ThreadType threadType);
    ~QvPresenterClass() override;

    /// The bus address of this presenter. Called from any thread.
    int pluginPid() const;

    /// Asks the bus to deliver events of this id to ProcEventMsg of presenter pid. The library passes
    /// its own pluginPid() and mode 1, on the user-interface thread, while it is being constructed.
    void SubEvent(int pid, const QVariant &eventId, int mode);

    /// Publishes the event and takes it over. Called on the thread of the page call.
    void PutEvent(int pid, CEventMessageCommon *event);

    /// Sends the request and takes it over; 0 means that it was sent. The answer arrives at
    /// ProcQuotationMsg. Called on the thread of the page call: it must not wait for the answer, nor
    /// deliver it on that thread before it returns, because nobody knows the request until then.
    int sendRequest_Async(CMessageCommon *request);

    /// Sends the request, takes it over, waits for the answer and stores it in reply; 0 means success.
    /// Blocks the calling thread.
    int sendRequest_Sync(CMessageCommon *request, QVariant &reply);

    /// What the bus delivers; it may call these on a thread of its own. The base does nothing.
    virtual void ProcEventMsg(QString name, QVariant type, QVariant data);
    virtual void ProcQuotationMsg(QString name, QVariant type, QVariant data);
    virtual void ProcAsyncCallBack(int id, QString name, QVariant type, QVariant data);

private:
    class Private;
    Private *const d;
    friend class QvPresenterAccess; ///< for the host alone: reaches what it keeps behind the presenter
};
