#pragma once

#include "HostApi.h"
#include "books/Accounts.h"
#include "books/OpeningBooks.h"
#include "exchange/Halts.h"
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
    QVector<Halt> halts;
    OpeningTerms opening;
    int busDelay = 20; ///< milliseconds of a request or event on the bus, at normal speed
    MarketRules rules;

    /// Reads a scenario file. On failure it returns false, and error has a line for each mistake, with the file, the
    /// place and the problem; the scenario is then unusable.
    static bool read(const QString &fileName, Scenario &scenario, QString &error);

    /// The same for the text of such a file. fileName: only for the mistakes.
    static bool parse(const QByteArray &text, const QString &fileName, Scenario &scenario, QString &error);

    /// The scenarios that are built in; the first one is the default.
    static QStringList builtInNames();

    /// The file of a built-in scenario; empty for another name.
    static QString builtIn(const QString &name);
    static QString defaultFile() { return builtIn(builtInNames().first()); }
};

} // namespace sim
