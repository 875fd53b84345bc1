#pragma once

#include "exchange/Halts.h"
#include "exchange/Instrument.h"
#include "platform/StrictJson.h"

#include <QVector>

namespace sim {

// What a scenario says about days and times. A time or date that could not be read is invalid.

QDateTime readDateTime(JsonNode &node, const QString &key);
QDate readDate(JsonNode &node, const QString &key);

/// The days on which the exchange does not trade although they are weekdays.
QVector<QDate> readHolidays(JsonNode &root);

/// securities: those that are written by hand; others cannot be named.
QVector<Halt> readHalts(JsonNode &root, const QVector<Instrument> &securities);

} // namespace sim
