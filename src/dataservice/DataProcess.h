#pragma once

#include "common/Export.h"

#include "HostTypes.h"

#include <QMap>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include <atomic>
#include <memory>

class CellTable;
class JsonWriter;
class QJsonDocument;

/// Turns the host's records into the texts that pages read.
/// One for the process, made by the first instance(), destroyed when the library is unloaded.
/// Every operation may be called from any thread, several at once, as far as the host's own may.
/// It keeps nothing between calls but the display mode, and never throws.
class VARNEL_WEBSDK_API DataProcess : public QObject {
    Q_OBJECT
public:
    /// Never null; valid until the library is unloaded. Any thread.
    static DataProcess *instance();
    ~DataProcess() override;

    /// Reads the display mode of record cells from the host. Each DataThread calls it when it is made; the
    /// last call counts for all views.
    void init();

    // The operations named process… return the whole reply as compact JSON; uuid comes back in it unchanged.
    // Unless an operation says otherwise, "code" is "0" and "msg" empty, whatever the host answers: when nothing is
    // found, the result is empty. A host value that JSON cannot express is null.

    // Login and accounts

    /// "resultData": the token of the current login.
    QString processToken(const QString &uuid);

    /// "resultData": the account of the trader who is logged in.
    QString processLoginTrader(const QString &uuid);

    /// "resultData": the identifiers of the organisation's traders, ascending.
    QString processTraderList(const QString &uuid);

    /// "resultData": the fund accounts of one property, each {"fundAccount", "fundAccountName"}, in the host's
    /// order. Which numbers fundProp may have is the host's matter; it is passed on unchanged.
    QString processFundAccountList(const QString &uuid, const int &fundProp);

    /// "resultData": the operator-station text for the two pieces of station information, joined by ";" when
    /// neither is empty.
    QString processGetOPStation(const QString &uuid, const QString &first, const QString &second);

    // Orders and executions

    /// The host's query keys for a page's filter. The filter is an object of optional lists of texts; anything else
    /// sets no condition. Each fund account is replaced by its first trading account.
    QVariantMap parseOrderFilter(const QJsonDocument &filter);

    /// "resultData": {"totalSize", "size", "entrustInfoList"}. filter: a JSON text; anything else gets "code"
    /// "-1" and no "resultData". The two integers page through the list as the host defines it.
    QString processEntrustList(const QString &uuid, const QVariant &filter, const int &pageArg1, const int &pageArg2);

    /// The same for executions, with "executionInfoList".
    QString processExecutionList(const QString &uuid, const QVariant &filter, const int &pageArg1, const int &pageArg2);

    // Positions and assets

    /// "resultData": the positions of the fund accounts, account by account; with a symbol only those of exactly
    /// that symbol.
    QString processPositionList(const QString &uuid, const QStringList &fundAccounts, const QString &symbol);

    /// "resultData": the asset record of each of the fund accounts, a text separated by commas; unknown ones are
    /// left out.
    QString processAsset(const QString &uuid, const QString &fundAccounts);

    /// The asset record of a fund account: amounts in the account's currency as texts with two decimals. Empty
    /// for an unknown fund account.
    QVariantMap packageAsset(const QString &fundAccount);

    // Records

    /// A host's order as pages know it: each page key with the pair of its display text and underlying value. What the
    /// host leaves out is null.
    QVariantMap packageEntrustOrderMsg(const QVariantMap &record);

    /// The same for an execution.
    QVariantMap packageExecutionOrderMsg(const QVariantMap &record);

    /// A position as pages know it: one value for each page key, and the bond interest.
    QVariantMap packagePositionMsg(const QVariantMap &record);

    // The packaged record alone as compact JSON, for a push.

    QString getEntrustOrderMsg(const QVariantMap &record);   ///< the text of packageEntrustOrderMsg
    QString getExecutionOrderMsg(const QVariantMap &record); ///< the text of packageExecutionOrderMsg
    QString getPositionMsg(const QVariantMap &record);       ///< the text of packagePositionMsg
    QString getAssetMsg(const QString &fundAccount); ///< the text of packageAsset; "{}" for an unknown fund account

    // Securities

    /// "resultData": {"symbol", "displayName", "spellName"} of each security that the filter selects. filter: a
    /// JSON text whose "symbolFilter" lists security classes; what is no JSON gets "code" "-1" and no
    /// "resultData".
    QString processSymbolList(const QString &uuid, const QVariant &filter);

    /// The same with the trading properties of each: about a dozen host calls for every security.
    QString processSymbolListWithDetail(const QString &uuid, const QVariant &filter);

    /// "resultData": the trading properties of the symbols, a text separated by commas; one record for each part,
    /// known or not.
    QString processSymbolDetail(const QString &uuid, const QString &symbols);

    // Quotes

    /// "resultData": the quote as it is. bare: the quote alone as JSON, without an envelope, for a push.
    QString processTick(const QString &uuid, const QString &symbol, const QVariantMap &tick, bool bare);

    /// "resultData": the candles, asked of the host in the same call, which blocks. "code" is "-1" when the request
    /// failed, with an empty list. No page call leads here; it is for hosts.
    QString processKLineData(const QString &uuid, const QString &symbol, const QString &startTime,
                             const QString &stopTime, EMD_KLINE_PERIOD period);

    /// Always the empty text.
    QString processUpsDowns(const QString &uuid, const QString &argument1, const QString &argument2,
                            const QString &argument3);

    /// "resultData": {"qty"}, the most that could be traded, as the host's text. Absent for an unknown fund
    /// account. Arguments 4, 7 and 8 are the host's and passed on unchanged.
    QString processTradableQty(const QString &uuid, const QString &fundAccount, const QString &symbol,
                               const QString &argument4, const QString &side, const QString &priceType,
                               const QString &argument7, const QString &argument8);

    // Settings and permissions: none of these can fail as far as a page is told.

    /// "resultData": the setting of the login account; empty when it was never saved.
    QString processGetSetting(const QString &uuid, const QString &key);

    /// Saves the setting. "resultData": always empty.
    QString processSaveSetting(const QString &uuid, const QString &key, const QString &value);

    /// "resultData": the number 1 when the fund account (group) may use the support type (item), else 0. May wait
    /// for the host's server while no permissions have been loaded yet.
    QString processGetPermission(const QString &uuid, const QString &group, const QString &item);

    /// Opens the host's permission menu. "resultData": always empty; the reply confirms the request, not its
    /// outcome.
    QString processOpenPermissionMenu(const QString &uuid);

private:
    DataProcess();
    void initOrderField();
    void initPositionField();

    // Write what packageEntrustOrderMsg and packageExecutionOrderMsg return, without making the map.
    void writeEntrustOrder(JsonWriter &json, const QVariantMap &record) const;
    void writeExecutionOrder(JsonWriter &json, const QVariantMap &record) const;

    /// Recomputes market value, holding cost, profit and return rate of an account's details; those of a futures
    /// account stay the host's.
    void refillMarketRelaData(QVariantMap &details, const QString &assetProp);

    // Written by init() while other threads may read it: they see the old value or the new one.
    std::atomic<ShowType> showType{ShowType(0)};

    // Constant after construction.
    QMap<QString, QString> orderFieldMap; ///< column to page key, for orders and executions alike
    QStringList entrustFieldList;
    QStringList executionFieldList;
    QMap<QString, QString> positionFieldMap;
    QStringList positionFieldList;
    QStringList positionIdentityFieldList; ///< columns that name a holding rather than measure it
    std::unique_ptr<const CellTable> entrustCells;
    std::unique_ptr<const CellTable> executionCells;
};
