#pragma once

#include "exchange/MarketRules.h"

#include <QVector>

namespace sim {

/// The listed securities: the given ones in their order, then as many as `generated` says, made up from the seed. The
/// same arguments give the same list. No symbol occurs twice. start: the day on which the scenario starts.
QVector<Instrument> listing(const QVector<Instrument> &given, int generated, quint64 seed, const QDate &start,
                            const MarketRules &rules = {});

} // namespace sim
