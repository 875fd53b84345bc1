#pragma once

#include <QString>

/// Names of the fields of a quote snapshot. docs/vocabulary.md explains them.
namespace QuoteFields {

inline const QString symbol = QStringLiteral("symbol");
inline const QString time = QStringLiteral("time");
inline const QString previousClose = QStringLiteral("previousClose");
inline const QString open = QStringLiteral("open");
inline const QString high = QStringLiteral("high");
inline const QString low = QStringLiteral("low");
inline const QString last = QStringLiteral("last");
inline const QString upperLimit = QStringLiteral("upperLimit");
inline const QString lowerLimit = QStringLiteral("lowerLimit");
inline const QString volume = QStringLiteral("volume");
inline const QString amount = QStringLiteral("amount");
inline const QString bidPrices = QStringLiteral("bidPrices");
inline const QString bidQtys = QStringLiteral("bidQtys");
inline const QString askPrices = QStringLiteral("askPrices");
inline const QString askQtys = QStringLiteral("askQtys");

} // namespace QuoteFields
