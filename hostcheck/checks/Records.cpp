#include "hostcheck/checks/Records.h"

#include "BusinessDataInterface.h"
#include "CBusinessDataBase.h"

namespace HostCheck {

namespace {

constexpr int kSome = 50;

template <typename Query>
RecordPage firstPage(Query query)
{
    RecordPage page;
    for (const auto &[first, second] : {std::pair(0, 0), std::pair(0, kSome), std::pair(1, kSome)}) {
        page.total = -1;
        page.records = query(page.total, first, second);
        if (!page.records.isEmpty())
            break;
    }
    return page;
}

RecordPage some(RecordPage page)
{
    page.records = page.records.mid(0, kSome);
    return page;
}

} // namespace

RecordPage ordersWhere(const QVariantMap &conditions)
{
    return firstPage([&](int &total, int first, int second) {
        return BusinessDataInterface::GetOrderListByCustomKey(conditions, total, first, second, {}, {});
    });
}

RecordPage executionsWhere(const QVariantMap &conditions)
{
    return firstPage([&](int &total, int first, int second) {
        return BusinessDataInterface::GetExecutionListByCustomKey(conditions, total, first, second, {});
    });
}

RecordPage someOrders()
{
    return some(ordersWhere({}));
}

RecordPage someExecutions()
{
    return some(executionsWhere({}));
}

QList<QVariantMap> positionsOf(const KnownValues &known, const QString &symbol)
{
    if (known.tradingAccount.isEmpty())
        return {};
    const QVariantMap details =
        present(CBusinessDataBase::GetInstance()).GetAccountDetailsByTradinngAccount(known.tradingAccount);
    return BusinessDataInterface::GetPositionListByAccount(details, {}, symbol, {}, {}, {}, {});
}

QList<QVariantMap> somePositions(const KnownValues &known)
{
    return positionsOf(known, {});
}

} // namespace HostCheck
