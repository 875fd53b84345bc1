#include "services/PermissionService.h"

#include "Algo_Fields.h"
#include "Tessar_Fields.h"
#include "Varnel_Fields.h"
#include "Varnel_MsgType.h"

namespace sim {

namespace {

const QString kAnswerType = QStringLiteral("QueryAlgoPermissionsByConditionResponse");

} // namespace

void PermissionService::install(MessageBus &bus, const Scenario &scenario, const Faults &faults)
{
    // All traders and accounts of a scenario belong to one organisation.
    const auto answer = [traders = scenario.traders, permissions = scenario.algoPermissions,
                         &faults](const QVariantMap &conditions) -> std::optional<QVariantList> {
        if (faults.isOn(Fault::FailPermissions))
            return std::nullopt;
        QVariantList records;
        if (!traders.contains(conditions.value(Tessar_Fields::UserAccount::userID).toString()))
            return records;
        const QString wanted = conditions.value(Algo_Fields::VarnelStrategy::supportType).toString();
        for (const AlgoPermission &permission : permissions) {
            if (permission.supportType == wanted)
                records.append(QVariantMap{{Varnel_Fields::FastFocus::fundAccount, permission.fundAccount},
                                           {Algo_Fields::VarnelStrategy::supportType, permission.supportType}});
        }
        return records;
    };
    bus.serve(Varnel_MsgType::QueryAlgoPermissionsByConditionRequest, kAnswerType, answer);
}

} // namespace sim
