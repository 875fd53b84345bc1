#pragma once

#include <QDateTime>
#include <QString>

/// Times as the terminal's records write them: "20250303094107". By hand, because Qt's formats cost more than all other
/// fields of a record together: reading one asks the system for the time zone.
namespace sim::TimeTexts {

/// Empty for an invalid time.
QString write(const QDateTime &time);

/// The time of day of such a text as "09:41:07". Empty for any other text.
QString timeOfDay(const QString &text);

} // namespace sim::TimeTexts
