#pragma once

#include <QVariantMap>

/// Accrued interest of the security with these details; 0 for what is no bond and for a bond whose data the
/// host cannot give.
double bondInterest(const QString &symbol, const QVariantMap &details);
