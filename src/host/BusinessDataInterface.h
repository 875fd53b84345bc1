#pragma once

#include "HostApi.h"

#include <QList>
#include <QMap>
#include <QStringList>
#include <QVariantMap>

/// The host's order, execution and position queries. All are called on the thread of a page call, several of them
/// possibly at once, and return copies in the host's order. When nothing is found, or the query fails, the answer is
/// empty: pages are not told of a failure.
class VARNEL_HOST_API BusinessDataInterface {
public:
    /// Some of the orders that match every key. keys: host field name to a QStringList of accepted values, of which an
    /// order must have one; an empty map matches all. The fields are Tessar_Fields::UserAccount::tradingAccount and
    /// loginUserId, Tessar_Fields::Security::symbol, orderStatus and algoOrderID, Varnel_Fields::ETF::UserReference3.
    /// total: 0 on entry, set to the number of matches before paging. The two integers come unchanged from the page,
    /// negative ones too; they say which part of the matches it wants, and the host says how. sortKeys and fields are
    /// always empty: the host's own order, all fields. The records go to VarnelEntrustReportGen::fillLineData.
    static QList<QVariantMap> GetOrderListByCustomKey(const QVariantMap &keys, int &total, int pageArg1, int pageArg2,
                                                      QList<QString> sortKeys, const QStringList &fields);

    /// The same for executions, whose records go to VarnelDealReportGen::fillLineData.
    static QList<QVariantMap> GetExecutionListByCustomKey(const QVariantMap &keys, int &total, int pageArg1,
                                                          int pageArg2, const QStringList &fields);

    /// The positions of one trading account, given by its details, which are those of
    /// CBusinessDataBase::GetAccountDetailsByTradinngAccount. symbol is empty for all positions; the host may ignore
    /// it, because the library leaves out positions of other symbols. The other five texts are always empty. A record
    /// has Tessar_Fields::Security::symbol, or securityID and Tessar_Fields::UserAccount::securityExchange; all of it
    /// goes to VarnelPositionReportGen::fillLineData.
    static QList<QVariantMap> GetPositionListByAccount(const QVariantMap &accountDetails, const QString &text1,
                                                       const QString &symbol, const QString &text3,
                                                       const QString &text4, const QString &text5,
                                                       const QString &text6);

    /// The fields of one order under the host's field names; empty for an unknown identifier. To cancel an order the
    /// library needs Tessar_Fields::UserAccount::tradingAccount and Tessar_Fields::Security::clOrdID.
    static QMap<QString, QVariant> GetOrderDetailByOrderID(const QString &orderId);
};
