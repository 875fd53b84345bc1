#pragma once

#include "common/Export.h"

#include "HostTypes.h"

#include <QMap>
#include <QObject>
#include <QStringList>

#include <atomic>

/// Turns the host's records into the texts that pages read.
/// One for the process, made by the first instance(), destroyed when the library is unloaded.
/// Every operation may be called from any thread, several at once, as far as the host's own may.
/// It keeps nothing between calls but the display mode, and never throws.
class VARNEL_WEBSDK_API DataProcess : public QObject {
    Q_OBJECT
public:
    static DataProcess *instance();
    ~DataProcess() override;

    /// Reads the display mode of record cells from the host. Each DataThread calls it when it is made; the
    /// last call counts for all views.
    void init();

    // Each of these returns the whole reply as compact JSON; uuid comes back in it unchanged. "code" is "0"
    // and "msg" empty, whatever the host answers: nothing found is an empty result, not a failure.

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

private:
    DataProcess();
    void initOrderField();
    void initPositionField();

    // Written by init() while other threads may read it: they see the old value or the new one.
    std::atomic<ShowType> showType{ShowType(0)};

    // Constant after construction.
    QMap<QString, QString> orderFieldMap; ///< column to page key, for orders and executions alike
    QStringList entrustFieldList;
    QStringList executionFieldList;
    QMap<QString, QString> positionFieldMap;
    QStringList positionFieldList;
    QStringList positionIdentityFieldList; ///< columns that name a holding rather than measure it
};
