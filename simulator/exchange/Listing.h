#pragma once

#include "exchange/MarketRules.h"

#include <QVector>

namespace sim {

/// The most that can be made up: the codes of futures have two digits for the year, so that they end after a century.
constexpr int kMostGenerated = 50000;

/// The listed securities: the given ones in their order, then as many as `generated` says, made up from the seed. The
/// same arguments give the same list. No symbol occurs twice. start: the day on which the scenario starts.
QVector<Instrument> listing(const QVector<Instrument> &given, int generated, quint64 seed, const QDate &start,
                            const MarketRules &rules = {});

} // namespace sim
