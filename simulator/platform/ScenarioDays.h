#pragma once

#include "exchange/Halts.h"
#include "platform/StrictJson.h"

#include <QVector>

#include <functional>

namespace sim {

// What a scenario says about days and times. A time or date that could not be read is invalid.

QDateTime readDateTime(JsonNode &node, const QString &key);
QDate readDate(JsonNode &node, const QString &key);

/// The days on which the exchange does not trade although they are weekdays.
QVector<QDate> readHolidays(JsonNode &root);

/// isListed: tells whether there is a security with that symbol.
QVector<Halt> readHalts(JsonNode &root, const std::function<bool(const QString &symbol)> &isListed);

} // namespace sim
