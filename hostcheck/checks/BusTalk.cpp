#include "hostcheck/checks/BusTalk.h"

#include "CPackMessageCommon.h"
#include "Orlo_Keys.h"
#include "Tessar_Fields.h"
#include "VarnelBusinessDataInterface.h"
#include "Varnel_Fields.h"
#include "common/WebConstants.h"

namespace HostCheck {

namespace {

const QString kSubEvent = QStringLiteral("varnel-host-check");

template <typename Message>
std::unique_ptr<Message> makeMessage(const Deletions &deletions)
{
    return std::make_unique<Tracked<Message>>(deletions ? deletions : std::make_shared<std::atomic<int>>(0));
}

} // namespace

int strategyCallEvent()
{
    return VarnelBusinessDataInterface::GetOrloEventMsgIdByStr(Orlo_Keys::EventMsgName::VELOX_TRANS_MSG_IN);
}

void publish(Probe &sender, const QString &marker, const Deletions &deletions)
{
    const int id = strategyCallEvent();
    CPackMessageCommon pack;
    pack.AddVaule(Varnel_Fields::VeloxFields::msgSubEventType, kSubEvent);
    pack.AddVaule(Tessar_Fields::System::msgType, id);
    pack.AddVaule(WebConstants::Strategy::uuid, marker);
    auto event = makeMessage<CEventMessageCommon>(deletions);
    event->SetSrcid(sender.pluginPid());
    event->SetType(id);
    event->SetMsg(pack.GetPackedMsg(0));
    sender.PutEvent(sender.pluginPid(), event.release());
}

QString markerOf(const Probe::Delivery &delivery)
{
    return rowOf(delivery.data).value(WebConstants::Strategy::uuid).toString();
}

QStringList markersAt(const Probe &probe)
{
    QStringList markers;
    for (const Probe::Delivery &delivery : probe.deliveries())
        markers.append(markerOf(delivery));
    return markers;
}

CMessageCommon *makeRequest(const Probe &sender, const QString &type, const Deletions &deletions)
{
    auto request = makeMessage<CMessageCommon>(deletions);
    request->SetSrcid(sender.pluginPid());
    request->SetType(type);
    request->SetMsg(CPackMessageCommon().GetPackedMsg(0));
    return request.release();
}

} // namespace HostCheck
