#pragma once

#include <QDate>
#include <QString>

namespace sim {

/// One listed security. A plain value, constant after the scenario has been read.
struct Instrument {
    QString symbol;     ///< unique, "600801.SH"
    QString securityId; ///< the exchange's own code, "600801"
    QString exchange;
    QString name;
    QString spellCode;      ///< first letters of the name's pinyin, for searches
    double price = 0;       ///< closing price of the last trading day before the scenario starts
    int ticksPerUnit = 100; ///< 1 divided by the price step, so that prices are exact decimals
    int lot = 100;          ///< smallest traded quantity
    int multiplier = 1;     ///< money per price unit and share or contract
    qint64 dailyVolume = 0; ///< what a usual day trades, in shares or contracts
    QDate listed;           ///< first trading day; there is no candle before it
};

} // namespace sim
