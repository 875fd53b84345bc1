#pragma once

#include "HostTypes.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantMap>

#include <functional>

/// Checks what the library expects of a host, before the first page is shown. Link the host, this archive and nothing
/// of the library. The archive has a main(); an executable that brings its own calls run() from it.
namespace HostCheck {

/// What exists on the host. A check that needs a missing value is skipped. The command line sets the same values and
/// wins over these.
struct KnownValues {
    QString symbol;         ///< any security
    QString bond;           ///< the symbol of a bond
    QString fundAccount;    ///< has at least one trading account
    QString tradingAccount; ///< has a fund account
    QString startTime;      ///< of the K-line requests, in the host's own form
    QString stopTime;       ///< the same

    /// Side, price type, price, quantity and exchange of an order for the symbol that the host takes. With
    /// "--with orders" it is placed several times, once with twice the quantity, and cancelled.
    VarnelLogic::OrderRequest order;

    /// Makes a message body of several rows in the host's wire form, which CPackMessageCommon cannot.
    std::function<QVariant(const QList<QVariantMap> &rows)> packRows;
};

/// What exists on the host, and how it starts and stops.
struct Options {
    KnownValues known;

    /// Brings up the host: bus, data, login. Called once in each process that runs checks, on the thread of its
    /// QApplication. arguments: what follows "--" on the command line. known may be filled in. Returns why the host
    /// could not start; the empty text when it did.
    std::function<QString(const QStringList &arguments, KnownValues &known)> start;

    /// Takes the host down again, after the last check of the process.
    std::function<void()> stop;
};

/// Runs the checks that the command line chooses and prints the report. Returns the exit status: 0 when nothing failed,
/// 1 when something failed, 2 for a bad command line. Starts this same program again for the checks themselves, so that
/// one that crashes takes no other down: main() must reach this call with its arguments unchanged. Uses the
/// QCoreApplication that exists, and makes one when none does.
int run(int argc, char *argv[], const Options &options = {});

} // namespace HostCheck
