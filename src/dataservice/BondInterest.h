#pragma once

#include <QVariantMap>

/// Accrued interest of the security with these details; 0 for a security that is not a bond, and for a bond that the
/// host has no data of.
double bondInterest(const QString &symbol, const QVariantMap &details);
