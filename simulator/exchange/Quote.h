#pragma once

#include <QDateTime>
#include <QString>
#include <QVector>

namespace sim {

/// One price level. Price and quantity are 0 when there is none.
struct QuoteLevel {
    double price = 0;
    qint64 qty = 0;
};

/// The quote of a security: its day so far and five price levels on each side.
struct Quote {
    static constexpr int kLevels = 5;

    QString symbol;
    QDateTime time; ///< of the last change
    double previousClose = 0;
    double open = 0;
    double high = 0;
    double low = 0;
    double last = 0;
    double upperLimit = 0; ///< 0 when there is no limit
    double lowerLimit = 0;
    qint64 volume = 0;        ///< shares, bonds or contracts
    double amount = 0;        ///< money
    QVector<QuoteLevel> bids; ///< five, best first
    QVector<QuoteLevel> asks;
};

/// What trades at one step of the exchange, and the price levels that it shows. A plain value.
struct StepTrades {
    double last = 0;
    qint64 volume = 0; ///< of this step alone, in whole lots
    QVector<QuoteLevel> bids;
    QVector<QuoteLevel> asks;
};

} // namespace sim
