#pragma once

#include "HostTypes.h"

#include <optional>

/// The rules about accounts and sides that several services share.

/// The first of the host's account records for a fund account, which stands for it everywhere. Nothing for a fund
/// account that the host does not know.
std::optional<tagUserAccountInfo> firstTradingAccount(const QString &fundAccount);

/// The side code that the host needs: after-hours fixed-price trading has codes of its own.
QString effectiveSide(const QString &side, const QString &priceType);
