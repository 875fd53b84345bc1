#include "hostcheck/checks/BusTalk.h"
#include "hostcheck/checks/Tables.h"

#include "CPackMessageCommon.h"
#include "Orlo_Keys.h"
#include "Tessar_Fields.h"
#include "VarnelBusinessDataInterface.h"
#include "VarnelCefView.h"
#include "Varnel_Fields.h"
#include "common/WebConstants.h"

namespace HostCheck {

namespace {

using namespace Varnel_Fields;
namespace Own = WebConstants::Strategy;

const QString kCall = QStringLiteral("varnel-host-check-call");

/// Asks for the status of a strategy that does not exist. Returns the fields of the answer; empty when none comes.
QVariantMap askForStatus(VarnelCefView *view)
{
    Probe probe;
    probe.SubEvent(
        probe.pluginPid(),
        QVariant(VarnelBusinessDataInterface::GetOrloEventMsgIdByStr(Orlo_Keys::EventMsgName::VELOX_TRANS_MSG_OUT)), 1);
    const int id = strategyCallEvent();
    CPackMessageCommon pack;
    pack.AddVaule(VeloxFields::msgSubEventType, VeloxValues::MSEventQueryStrategyStatusReq);
    pack.AddVaule(Tessar_Fields::System::msgType, id);
    pack.AddVaule(Tessar_Fields::Strategy::strategyID, kUnknown);
    pack.AddVaule(Own::extField, QVariant());
    pack.AddVaule(Own::panelPtr, QVariant::fromValue(view));
    pack.AddVaule(Own::uuid, kCall);
    auto event = std::make_unique<CEventMessageCommon>();
    event->SetSrcid(probe.pluginPid());
    event->SetType(id);
    event->SetMsg(pack.GetPackedMsg(0));
    probe.PutEvent(probe.pluginPid(), event.release());

    // The platform may say other things meanwhile. Its answer names the strategy or the call.
    QVariantMap answer;
    waitUntil([&] {
        for (const Probe::Delivery &delivery : probe.deliveries()) {
            const QVariantMap row = rowOf(delivery.data);
            if (row.value(Tessar_Fields::Strategy::strategyID) == QVariant(kUnknown) ||
                row.value(Own::uuid) == QVariant(kCall))
                answer = row;
        }
        return !answer.isEmpty();
    });
    return answer;
}

VarnelCefView &callingView()
{
    static auto *const view = new VarnelCefView; // must not end with the static objects, after the QApplication
    return *view;
}

/// Asked once for all checks that look at it.
const QVariantMap &statusAnswer()
{
    static const QVariantMap answer = askForStatus(&callingView());
    return answer;
}

QVariant inAnswer(const QString &field)
{
    if (statusAnswer().isEmpty())
        skip(QStringLiteral("no answer comes: see strategies.answer"));
    return statusAnswer().value(field);
}

void answer(const KnownValues &)
{
    expect(!statusAnswer().isEmpty(),
           "the platform answers a query for a strategy that does not exist, in an event VELOX_TRANS_MSG_OUT",
           QStringLiteral("nothing came"));
}

void answerHasItsKind(const KnownValues &)
{
    const QVariant kind = inAnswer(VeloxFields::msgSubEventType);
    expect(kind.toString() == VeloxValues::MSEventQueryStrategyStatusRsp,
           "the answer to a status query is a MSEventQueryStrategyStatusRsp", shown(kind));
}

void answerHasTheView(const KnownValues &)
{
    const QVariant view = inAnswer(Own::panelPtr);
    expect(view.userType() == qMetaTypeId<VarnelCefView *>() &&
               *static_cast<VarnelCefView *const *>(view.constData()) == &callingView(),
           "the answer has the \"panelPtr\" of the call, of the type VarnelCefView*",
           QStringLiteral("a value of the type %1").arg(QLatin1String(view.typeName())));
}

void answerHasTheCall(const KnownValues &)
{
    const QVariant call = inAnswer(Own::uuid);
    expect(call.toString() == kCall, "the answer has the \"uuid\" of the call", shown(call));
}

void answerTellsSuccess(const KnownValues &)
{
    const QVariant description = inAnswer(Tessar_Fields::System::textDescription);
    const QString text = description.toString();
    expect(!text.isEmpty() && text != QLatin1String("0"),
           "the textDescription of an answer that tells a failure gives the reason; \"0\" tells success",
           shown(description));
}

} // namespace

CheckTable strategyChecks()
{
    return {
        {"strategies.answer", "Pages get no answers to their strategy calls.", answer, Part::Login},
        {"strategies.answer-has-its-kind", "Pages get no answers to their strategy calls.", answerHasItsKind,
         Part::Login},
        {"strategies.answer-has-the-view", "No page gets the answer, because nobody knows who has asked.",
         answerHasTheView, Part::Login},
        {"strategies.answer-has-the-call", "Pages cannot tell which of their calls an answer belongs to.",
         answerHasTheCall, Part::Login},
        {"strategies.answer-tells-failure", "Pages take a failure for a success, or show it without a reason.",
         answerTellsSuccess, Part::Login},
    };
}

} // namespace HostCheck
