#pragma once

#include "HostTypes.h"

#include <optional>

/// The rules about accounts and sides that several services share.

/// The account record that stands for a fund account: the host's first. Nothing for a fund account that the
/// host does not know.
std::optional<tagUserAccountInfo> firstTradingAccount(const QString &fundAccount);

/// The side as the host wants it: after hours, fixed-price trading has side codes of its own.
QString effectiveSide(const QString &side, const QString &priceType);
