#pragma once

#include <QString>
#include <QStringList>

/// @file
/// Enumerations and value structs that cross the boundary between host and library.
/// All are plain values: copied freely, owned by nobody, and start at zero and empty.

/// How the host's report generators write a cell. The library passes the current value on.
enum ShowType {
    PlainShowType = 0,   ///< digits without separators
    GroupedShowType = 1, ///< digits in groups of thousands
};

/// How VarnelUtils::QueryDatasFromServer waits for its answer. The library uses this one only.
enum QueryDataMode {
    BlockingQueryDataMode = 1, ///< the call returns when the answer is there
};

/// Length of one candle.
enum EMD_KLINE_PERIOD {
    MinuteKLinePeriod = 1, ///< what a page asks for with "1"
    DayKLinePeriod = 2,    ///< what a page asks for with any other text
};

/// Kinds of the host's basic trade requests. The library sends this one only.
enum Basic_Trade_REQ_Type {
    CancelOrdersTradeRequest = 13, ///< cancels one or more orders
};

/// One trading account below a fund account.
struct tagUserAccountInfo {
    QString fundAccount;     ///< what pages know an account by
    QString fundAccountName; ///< the account name that asset records show
    QString tradingAccount;  ///< the account that order entry and account look-ups use
};

/// What one trading account holds at current prices, in the account's currency.
struct VarnelMarketValueInfo {
    double marketValue = 0; ///< what the holdings are worth
    double holdingCost = 0; ///< what they have cost; no return rate is computed when it is 0 or less
};

/// Base data of one bond. The library reads only the interest.
struct stuBaseInfo {
    QString symbol;      ///< not read
    QString bondName;    ///< not read
    double interest = 0; ///< accrued interest for 100 of face value
};

/// One class of securities in a search, as the page wrote it: what an empty text or list means is the host's to decide.
struct SymbolListType {
    QString securityType;        ///< such as shares or bonds
    QStringList securitySubType; ///< any of these
    QStringList securityPost;    ///< boards (market segments)
};

/// Values of the trade logic.
namespace VarnelLogic {

/// One order as the trade logic takes it. All texts are the page's, unchecked, apart from the side of orders after
/// hours.
struct OrderRequest {
    QString symbol;      ///< may be empty or unknown: the host refuses it
    qint64 orderQty = 0; ///< shares, bonds or contracts; 0 when the page sent no whole number; may be negative
    QString priceType;   ///< a code of the host
    QString price;       ///< a decimal number, if the page wrote one
    QString side;        ///< a code of the host
    QString exchange;    ///< may be empty
    QString clOrdID;     ///< from CBusinessDataBase::getClientOrderID(), a new one for each order
    QString orderTag;    ///< the page's own mark, also that of the list
};

/// One reason for which the trade logic refused a request.
struct ResponseInfo {
    int code = 0;    ///< not read
    QString message; ///< for the user; pages get that of the first reason as "msg"
};

} // namespace VarnelLogic
