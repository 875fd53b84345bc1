#pragma once

#include <QString>
#include <QStringList>

/// Enumerations and value structs that cross the boundary between host and library.
/// All are plain values: copied freely, owned by nobody, and start at zero and empty.

/// How the host's report generators write a cell. The library hands the current value through.
enum ShowType {
    PlainShowType = 0,
    GroupedShowType = 1,
};

/// How VarnelUtils::QueryDatasFromServer waits for its answer. The library uses this one only.
enum QueryDataMode {
    BlockingQueryDataMode = 1,
};

/// Length of one candle.
enum EMD_KLINE_PERIOD {
    MinuteKLinePeriod = 1,
    DayKLinePeriod = 2,
};

/// Kinds of the host's basic trade requests. The library sends this one only.
enum Basic_Trade_REQ_Type {
    CancelOrdersTradeRequest = 13,
};

/// One trading account below a fund account.
struct tagUserAccountInfo {
    QString fundAccount;
    QString fundAccountName; ///< the account name that asset records show
    QString tradingAccount;  ///< the account that order entry and account look-ups use
};

/// What one trading account holds at current prices, in the account's currency.
struct VarnelMarketValueInfo {
    double marketValue = 0;
    double holdingCost = 0;
};

/// Base data of one bond. The library reads only the interest.
struct stuBaseInfo {
    QString symbol;
    QString bondName;
    double interest = 0; ///< accrued interest for 100 of face value
};

/// One class of securities in a search: what an empty list means is the host's to decide.
struct SymbolListType {
    QString securityType;
    QStringList securitySubType;
    QStringList securityPost; ///< boards (market segments)
};

namespace VarnelLogic {

/// One order as the trade logic takes it. Price and codes are texts of the host's vocabulary.
struct OrderRequest {
    QString symbol;
    qint64 orderQty = 0;
    QString priceType;
    QString price;
    QString side;
    QString exchange;
    QString clOrdID; ///< from CBusinessDataBase::getClientOrderID(), fresh for each order
    QString orderTag;
};

/// One reason for which the trade logic refused a request. The message is shown to the user.
struct ResponseInfo {
    int code = 0;
    QString message;
};

} // namespace VarnelLogic
