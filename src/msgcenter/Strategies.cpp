#include "msgcenter/WebMsgCenter.h"

#include "common/PageArguments.h"
#include "common/Reply.h"
#include "msgcenter/StrategyCalls.h"

#include "CEventMessageCommon.h"
#include "CPackMessageCommon.h"
#include "Orlo_Keys.h"
#include "Tessar_Fields.h"
#include "VarnelBusinessDataInterface.h"
#include "Varnel_Fields.h"

#include <QDebug>
#include <QPointer>

#include <memory>

using namespace PageArguments;
using namespace Varnel_Fields;
using namespace WebConstants;
using Tessar_Fields::Strategy::strategyBasicParam;

namespace {

/// The view that a strategy event names; null when it names none. The pointer may be stale. QVariant's own conversion
/// would follow it, so the bare pointer is read; it may only be compared.
VarnelCefView *viewNamedIn(const QVariantMap &dataMap)
{
    const QVariant view = dataMap.value(Strategy::panelPtr);
    if (view.userType() != qMetaTypeId<VarnelCefView *>())
        return nullptr;
    return *static_cast<VarnelCefView *const *>(view.constData());
}

} // namespace

// Requests. The platform's answer becomes the page's. Meant: a call with too few arguments gets no answer.

void WebMsgCenter::Vlx_startStrategy_REQ(const QList<QVariant> &arguments, VarnelCefView *panelPtr)
{
    if (arguments.size() < 6)
        return;
    callStrategyPlatform(VeloxValues::MSEventStartStrategyReq, ReplyEvent::Vlx_startStrategy,
                         {{strategyBasicParam, Variant::read(arguments.at(4))},
                          {Strategy::filePath, Text::read(arguments.at(1))},
                          {Strategy::language, Integer::read(arguments.at(2))},
                          {Strategy::fundAccountList, CommaList::read(arguments.at(3))},
                          {Strategy::extField, Variant::read(arguments.at(5))}},
                         arguments, panelPtr);
}

void WebMsgCenter::Vlx_stopStrategy_REQ(const QList<QVariant> &arguments, VarnelCefView *panelPtr)
{
    if (arguments.size() < 3)
        return;
    callStrategyPlatform(VeloxValues::MSEventStopStrategyReq, ReplyEvent::Vlx_stopStrategy,
                         {{Tessar_Fields::Strategy::strategyID, Text::read(arguments.at(1))},
                          {Strategy::extField, Variant::read(arguments.at(2))}},
                         arguments, panelPtr);
}

void WebMsgCenter::Vlx_queryStrategyStatus_REQ(const QList<QVariant> &arguments, VarnelCefView *panelPtr)
{
    if (arguments.size() < 3)
        return;
    callStrategyPlatform(VeloxValues::MSEventQueryStrategyStatusReq, ReplyEvent::Vlx_queryStrategyStatus,
                         {{Tessar_Fields::Strategy::strategyID, Text::read(arguments.at(1))},
                          {Strategy::extField, Variant::read(arguments.at(2))}},
                         arguments, panelPtr);
}

void WebMsgCenter::Vlx_sendCustomInfo_REQ(const QList<QVariant> &arguments, VarnelCefView *panelPtr)
{
    if (arguments.size() < 3)
        return;
    sendToStrategyPlatform(VeloxValues::MSEventStrategyCustomMsg,
                           {{VeloxFields::strategyCustomMsgID, Text::read(arguments.at(1))},
                            {VeloxFields::strategyCustomMsg, Text::read(arguments.at(2))}},
                           arguments, panelPtr);
}

void WebMsgCenter::Vlx_subStrategyMsg_REQ(const QList<QVariant> &arguments, VarnelCefView *panelPtr)
{
    if (arguments.size() < 3)
        return;
    const QString messageId = Text::read(arguments.at(1));
    const QString subType = Text::read(arguments.at(2));
    const QPointer<VarnelCefView> alive(panelPtr); // as in subscribe()
    sendToStrategyPlatform(VeloxValues::MSEventSubStrategyMsg,
                           {{VeloxFields::strategyCustomMsgID, messageId}, {Strategy::subType, subType}}, arguments,
                           panelPtr);
    if (!alive)
        return;

    watch(panelPtr);
    const std::lock_guard<std::mutex> lock(m_strategyMutex);
    QList<VarnelCefView *> &views = m_strategySubMap[messageId];
    if (subType != Flag::one)
        views.removeOne(panelPtr);
    else if (!views.contains(panelPtr))
        views.append(panelPtr);
    if (views.isEmpty()) // a page cannot fill the map with identifiers that nobody listens to
        m_strategySubMap.remove(messageId);
}

/// Sends a call that the platform answers. The answer may come before this returns.
void WebMsgCenter::callStrategyPlatform(const QString &subEvent, const QString &replyEvent, const Fields &fields,
                                        const QVariantList &arguments, VarnelCefView *view)
{
    if (view) {
        watch(view);
        const std::lock_guard<std::mutex> lock(m_strategyMutex);
        m_strategyCalls->add(view, replyEvent, Text::read(arguments.at(0)));
    }
    sendToStrategyPlatform(subEvent, fields, arguments, view);
}

void WebMsgCenter::sendToStrategyPlatform(const QString &subEvent, const Fields &fields, const QVariantList &arguments,
                                          VarnelCefView *view)
{
    const int eventId =
        VarnelBusinessDataInterface::GetOrloEventMsgIdByStr(Orlo_Keys::EventMsgName::VELOX_TRANS_MSG_IN);
    CPackMessageCommon pack;
    pack.AddVaule(VeloxFields::msgSubEventType, subEvent);
    pack.AddVaule(Tessar_Fields::System::msgType, eventId);
    for (const auto &[key, value] : fields)
        pack.AddVaule(key, value);
    pack.AddVaule(Strategy::panelPtr, QVariant::fromValue(view));
    pack.AddVaule(Strategy::uuid, Text::read(arguments.at(0)));

    auto event = std::make_unique<CEventMessageCommon>();
    event->SetSrcid(pluginPid());
    event->SetType(eventId);
    event->SetMsg(pack.GetPackedMsg(0));
    PutEvent(pluginPid(), event.release());
}

// Answers and notices of the platform.

void WebMsgCenter::parseStrategyEvent(const QVariantMap &dataMap)
{
    using Parser = void (WebMsgCenter::*)(const QVariantMap &);
    static const QPair<QString, Parser> parsers[] = {
        {VeloxValues::MSEventStartStrategyRsp, &WebMsgCenter::parseVlxStartResponse},
        {VeloxValues::MSEventStopStrategyRsp, &WebMsgCenter::parseVlxStopResponse},
        {VeloxValues::MSEventStrategyCustomMsg, &WebMsgCenter::parseVlxRcvCustomMsg},
        {VeloxValues::MSEventQueryStrategyStatusRsp, &WebMsgCenter::parseVlxQueryStatusResponse},
        {VeloxValues::MSEventStrategyStatusUpdate, &WebMsgCenter::parseVlxRcvStrategyStatusUpdate},
    };
    const QString subEvent = dataMap.value(VeloxFields::msgSubEventType).toString();
    for (const auto &[name, parse] : parsers) {
        if (subEvent == name)
            return (this->*parse)(dataMap);
    }
}

void WebMsgCenter::parseVlxStartResponse(const QVariantMap &dataMap)
{
    answerStrategyCall(dataMap, ReplyEvent::Vlx_startStrategy, VARNEL_OPERATION(WebMsgCenter, parseVlxStartResponse));
}

void WebMsgCenter::parseVlxStopResponse(const QVariantMap &dataMap)
{
    answerStrategyCall(dataMap, ReplyEvent::Vlx_stopStrategy, VARNEL_OPERATION(WebMsgCenter, parseVlxStopResponse));
}

void WebMsgCenter::parseVlxQueryStatusResponse(const QVariantMap &dataMap)
{
    answerStrategyCall(dataMap, ReplyEvent::Vlx_queryStrategyStatus,
                       VARNEL_OPERATION(WebMsgCenter, parseVlxQueryStatusResponse));
}

void WebMsgCenter::answerStrategyCall(const QVariantMap &dataMap, const QString &replyEvent, const Operation &operation)
{
    VarnelCefView *const view = viewNamedIn(dataMap);
    const QString uuid = dataMap.value(Strategy::uuid).toString();
    const bool viewHasEnded = [&] {
        const std::lock_guard<std::mutex> lock(m_strategyMutex);
        return m_strategyCalls->takeAndTellIfEnded(view, replyEvent, uuid);
    }();
    if (viewHasEnded || !registry()->contains(view)) {
        logLine(QtDebugMsg, operation) << "pointer error";
        return;
    }
    const QString description = dataMap.value(Tessar_Fields::System::textDescription).toString();
    const bool succeeded = description == Code::success;
    const QVariantMap result{
        {Key::strategyID, dataMap.value(Tessar_Fields::Strategy::strategyID).toString()},
        {Key::strategyStatus, dataMap.value(Tessar_Fields::Strategy::strategyStatus).toString()},
        {Key::extField, dataMap.value(Strategy::extField)},
    };
    Reply::send(
        view, replyEvent,
        Reply::text(uuid, result, succeeded ? Code::success : Code::failure, succeeded ? QString() : description));
}

void WebMsgCenter::parseVlxRcvCustomMsg(const QVariantMap &dataMap)
{
    const QString messageId = dataMap.value(VeloxFields::strategyCustomMsgID).toString();
    const QCefEvent push =
        Reply::event(Push::vlxRcvCustomInfo, {messageId, dataMap.value(VeloxFields::strategyCustomMsg).toString()});
    const std::shared_ptr<const ViewRegistry> registered = registry();
    const std::lock_guard<std::mutex> lock(m_strategyMutex);
    const QList<VarnelCefView *> views = m_strategySubMap.value(messageId);
    for (VarnelCefView *const view : views) {
        if (registered->contains(view))
            view->broadcastEvent(push);
    }
}

void WebMsgCenter::parseVlxRcvStrategyStatusUpdate(const QVariantMap &dataMap)
{
    if (registry()->views.isEmpty()) {
        qCDebug(lcWebSdk) << "WebMsgCenter::parseVlxRcvStrategyStatusUpdate"
                          << "object empty";
        return;
    }
    pushToAll(Push::vlxStrategyStatusUpdate, {dataMap.value(Tessar_Fields::Strategy::strategyID).toString(),
                                              dataMap.value(Tessar_Fields::Strategy::strategyStatus).toString()});
}
