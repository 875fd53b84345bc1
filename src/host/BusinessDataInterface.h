#pragma once

#include "HostApi.h"

#include <QList>
#include <QMap>
#include <QStringList>
#include <QVariantMap>

/// The host's order, execution and position queries. All are called on the thread of a page call,
/// several of them possibly at once, and return copies in the host's order.
class VARNEL_HOST_API BusinessDataInterface {
public:
    /// A page of the orders that match every key. keys: host field name to a QStringList of accepted
    /// values; an empty map matches all. total: set to the number of matches before paging. The two
    /// integers come unchanged from the page. The library passes empty lists for the last two.
    static QList<QVariantMap> GetOrderListByCustomKey(const QVariantMap &keys, int &total, int pageArg1, int pageArg2,
                                                      QList<QString> sortKeys, const QStringList &fields);

    /// The same for executions.
    static QList<QVariantMap> GetExecutionListByCustomKey(const QVariantMap &keys, int &total, int pageArg1,
                                                          int pageArg2, const QStringList &fields);

    /// The positions of one trading account, given by its details
    /// (CBusinessDataBase::GetAccountDetailsByTradinngAccount). The library uses the second text for the
    /// symbol, empty for all, and leaves the other five empty.
    static QList<QVariantMap> GetPositionListByAccount(const QVariantMap &accountDetails, const QString &text1,
                                                       const QString &symbol, const QString &text3,
                                                       const QString &text4, const QString &text5,
                                                       const QString &text6);

    /// The fields of one order; empty for an unknown identifier.
    static QMap<QString, QVariant> GetOrderDetailByOrderID(const QString &orderId);
};
