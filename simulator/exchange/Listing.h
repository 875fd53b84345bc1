#pragma once

#include "exchange/Instrument.h"

#include <QVector>

namespace sim {

/// What is listed: the given securities in their order, and behind them so many that are made up from the seed. The
/// same arguments give the same list. No symbol is there twice. start: the day on which the scenario starts.
QVector<Instrument> listing(const QVector<Instrument> &given, int generated, quint64 seed, const QDate &start);

} // namespace sim
