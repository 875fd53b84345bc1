// The terminal must put here: the queries of its orders, executions and positions.
#include "BusinessDataInterface.h"

QList<QVariantMap> BusinessDataInterface::GetOrderListByCustomKey(const QVariantMap &, int &total, int, int,
                                                                  QList<QString>, const QStringList &)
{
    total = 0;
    return {};
}

QList<QVariantMap> BusinessDataInterface::GetExecutionListByCustomKey(const QVariantMap &, int &total, int, int,
                                                                      const QStringList &)
{
    total = 0;
    return {};
}

QList<QVariantMap> BusinessDataInterface::GetPositionListByAccount(const QVariantMap &, const QString &,
                                                                   const QString &, const QString &, const QString &,
                                                                   const QString &, const QString &)
{
    return {};
}

QMap<QString, QVariant> BusinessDataInterface::GetOrderDetailByOrderID(const QString &)
{
    return {};
}
