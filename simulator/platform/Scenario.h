#pragma once

#include "HostApi.h"
#include "books/Accounts.h"
#include "exchange/Instrument.h"

#include <QDateTime>
#include <QMap>
#include <QVector>

namespace sim {

/// A fund account that may use algorithms of a support type.
struct AlgoPermission {
    QString fundAccount;
    QString supportType;
};

/// A world that the simulator can play, as its file tells it. A plain value.
struct VARNEL_HOST_API Scenario {
    QString name;
    quint64 seed = 0;
    QDateTime start;       ///< exchange time at which the simulator begins
    QString station;       ///< what the terminal knows about the machine it runs on
    QVector<Login> logins; ///< the first one is logged in unless the command line says otherwise
    QMap<QString, QString> traders;
    QVector<FundAccount> fundAccounts;
    QVector<AlgoPermission> algoPermissions;
    QVector<Instrument> securities;
    int generatedSecurities = 0; ///< how many more are made up from the seed

    /// Reads a scenario file. On failure false, with one line in error that names the file, the place and what is
    /// wrong; the scenario is then not to be used.
    static bool read(const QString &fileName, Scenario &scenario, QString &error);

    /// The scenario that is built in.
    static QString defaultFile();
};

} // namespace sim
