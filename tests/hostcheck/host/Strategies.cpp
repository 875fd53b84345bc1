#include "Bus.h"
#include "Fault.h"
#include "Tessar_Fields.h"
#include "Varnel_Fields.h"

using namespace Varnel_Fields;

int strategyAnswers()
{
    return hasFault("EventIdIsTradingEvent") ? kOrderEvent : kStrategyAnswers;
}

// The platform runs no strategy: whatever is asked for does not exist.
void takeStrategyCall(const QVariantMap &call)
{
    if (call.value(VeloxFields::msgSubEventType).toString() != VeloxValues::MSEventQueryStrategyStatusReq ||
        hasFault("NoStrategyAnswer"))
        return;
    QVariantMap answer = call;
    answer.insert(VeloxFields::msgSubEventType, hasFault("StrategyAnswerOfOtherKind")
                                                    ? VeloxValues::MSEventStopStrategyRsp
                                                    : VeloxValues::MSEventQueryStrategyStatusRsp);
    answer.insert(Tessar_Fields::System::textDescription,
                  hasFault("StrategyFailureAsSuccess") ? QStringLiteral("0") : QStringLiteral("策略不存在"));
    if (hasFault("StrategyAnswerWithoutView"))
        answer.remove(QStringLiteral("panelPtr"));
    if (hasFault("StrategyAnswerWithoutCall"))
        answer.remove(QStringLiteral("uuid"));
    Bus::instance().publish(strategyAnswers(), packed(answer));
}
