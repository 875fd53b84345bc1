#pragma once

#include "HostMock.h"

/// Expectations for host calls that several operations make, with their answers. Each is for exactly one call.

void expectAccounts(HostMock &host, const QString &fundAccount, const QList<tagUserAccountInfo> &accounts);

/// A report generator that fills each cell with two values that name their column; for testing::WithArgs.
bool fillCells(QMap<int, QVariantMap> &lineData, const QStringList &columns);
QString displayText(const QString &column); ///< what it fills in to be displayed
QString userValue(const QString &column);   ///< what it fills in as the value behind that

/// Expects the calls for a position of that symbol, in this order; fillCells fills the cells.
void expectPosition(HostMock &host, const QVariantMap &record, const QString &symbol, const QVariantMap &quote = {},
                    const QVariantMap &securityDetails = {});

/// Everything that the host knows about a security. All numbers differ, so that a mix-up shows.
struct SecurityAnswers {
    QVariantMap details;
    int qtyUnit = 11;
    int precision = 12;
    double priceUnit = 0.013;
    int displayQtyStep = 14;
    int qtyStep = 15;
    qint64 minQty = 100;
    qint64 maxQty = 1000000;
    QString type = QStringLiteral("type");
    QString subType = QStringLiteral("sub-type");
};

/// Expects the calls for one record with all properties of a security, in this order. For a bond one more call follows.
void expectSecurity(HostMock &host, const QString &symbol, const SecurityAnswers &answers = {});

/// Expects the call for a bond's base data with a structure that is still empty.
void expectBond(HostMock &host, const QString &symbol, const QString &result, double interest);

/// The details of a bond.
QVariantMap bondDetails();
