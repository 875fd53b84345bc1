#pragma once

#include "HostApi.h"
#include "books/Accounts.h"
#include "exchange/MarketRules.h"

#include <QDateTime>
#include <QMap>
#include <QVector>

namespace sim {

/// A fund account that may use algorithms of a support type.
struct AlgoPermission {
    QString fundAccount;
    QString supportType;
};

/// What the simulator plays, as read from a scenario file. A plain value.
struct VARNEL_HOST_API Scenario {
    QString name;
    quint64 seed = 0;
    QDateTime start;       ///< exchange time at which the simulator begins
    QString station;       ///< description of the machine that the terminal runs on
    QVector<Login> logins; ///< the first one is logged in unless the command line says otherwise
    QMap<QString, QString> traders;
    QVector<FundAccount> fundAccounts;
    QVector<AlgoPermission> algoPermissions;
    QVector<Instrument> securities;
    int generatedSecurities = 0; ///< how many more are made up from the seed
    MarketRules rules;           ///< files do not set them

    /// Reads a scenario file. On failure it returns false, and error is one line with the file, the place and the
    /// problem; the scenario is then unusable.
    static bool read(const QString &fileName, Scenario &scenario, QString &error);

    /// The same with the text of a file. name: of the file, for errors.
    static bool parse(const QByteArray &text, const QString &name, Scenario &scenario, QString &error);

    /// The scenario that is built in.
    static QString defaultFile();
};

} // namespace sim
