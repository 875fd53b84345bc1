#pragma once

#include "HostApi.h"
#include "IMessageInterface.h"

#include <QObject>
#include <QString>
#include <QVariant>

class CEventMessageCommon;
class CMessageCommon;

/// One participant of the host's message bus; the library's message center derives from it.
///
/// The fields of a strategy message, from the library to the platform: Varnel_Fields::VeloxFields::msgSubEventType, one
/// of Varnel_Fields::VeloxValues; Tessar_Fields::System::msgType, the event's id; those of the kind, below; "panelPtr",
/// the calling view as a VarnelCefView *; "uuid", the page's call identifier.
///
/// - start: Tessar_Fields::Strategy::strategyBasicParam, "FilePath", "Language" (an integer), "FundAccountList" (a
///   QStringList), "ExtField"
/// - stop, query: Tessar_Fields::Strategy::strategyID, "ExtField"
/// - custom message: Varnel_Fields::VeloxFields::strategyCustomMsgID, strategyCustomMsg
/// - subscription: Varnel_Fields::VeloxFields::strategyCustomMsgID, "SubType" ("1", or any other text to end
///   the subscription)
///
/// The platform's answer to a start, stop or query returns "panelPtr", "uuid" and "ExtField" unchanged, with
/// Tessar_Fields::Strategy::strategyID, strategyStatus and Tessar_Fields::System::textDescription ("0" for success,
/// otherwise the reason).
class VARNEL_HOST_API QvPresenterClass : public QObject {
    Q_OBJECT
public:
    /// The name is the presenter's identity on the bus. The library makes one, "WebWebMsgCenter", on the user-interface
    /// thread and without a parent.
    QvPresenterClass(const QString &name, QObject *parent, IMessageInterface::ThreadType threadType);
    ~QvPresenterClass() override;

    /// The bus address of this presenter, the same for its whole life. Called from any thread.
    int pluginPid() const;

    /// Asks the bus to deliver events of this id, an integer, to ProcEventMsg of presenter pid. The library passes its
    /// own pluginPid() and mode 1, on the user-interface thread, while it is being constructed: 0x300A0, 0x30003,
    /// 0x30005, 0x30004, 0x30006, 0x31002, 0x30001 and the id of Orlo_Keys::EventMsgName::VELOX_TRANS_MSG_OUT. Events
    /// may come at once; the library drops them until a view is registered.
    void SubEvent(int pid, const QVariant &eventId, int mode);

    /// Publishes the event and takes it over, also when nobody wants it. Called on the user-interface thread, for
    /// strategy messages.
    void PutEvent(int pid, CEventMessageCommon *event);

    /// Sends the request and takes it over, also when it fails; 0 means that it was sent, anything else that no answer
    /// will come. The answer arrives at ProcQuotationMsg. Called on the thread of the page call: it must not wait for
    /// the answer, nor deliver it on that thread before it returns, because nobody knows the request until then. The
    /// one kind is "KLineRequest" with the fields "Symbol", "StartTime", "StopTime" (texts), "ExrightsType" (always
    /// 10), "PeriodType" (EMD_KLINE_PERIOD) and Tessar_Fields::System::msgType.
    int sendRequest_Async(CMessageCommon *request);

    /// Sends the request, takes it over also when it fails, waits for the answer and stores it in reply, a QVariantList
    /// of maps; 0 means success. Blocks the calling thread. No page call leads here, only
    /// WebMsgCenter::syncRequestKLineData.
    int sendRequest_Sync(CMessageCommon *request, QVariant &reply);

    // What the bus delivers; it may call these on a thread of its own. The base does nothing.

    /// An event: type is its id, data its body for CUnPackMessageCommon::SetUnPackMsg. The library ignores the name.
    virtual void ProcEventMsg(QString name, QVariant type, QVariant data);

    /// The answer to a request of sendRequest_Async: type is "KLineResponse", data a QVariantList with one map for each
    /// candle, each with Tessar_Fields::System::clientMsgID of the request. The library ignores the name.
    virtual void ProcQuotationMsg(QString name, QVariant type, QVariant data);

    /// Any other answer. The library needs none.
    virtual void ProcAsyncCallBack(int id, QString name, QVariant type, QVariant data);

private:
    class Private;
    Private *const d;
    friend class QvPresenterAccess; ///< for the host alone: reaches what it keeps behind the presenter
};
