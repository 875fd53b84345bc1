#pragma once

#include <QDate>
#include <QString>

namespace sim {

enum class SecurityKind { Share, Fund, Bond, Future };

/// One listed security. A plain value, constant once it is listed.
struct Instrument {
    QString symbol;     ///< unique, "609801.SH"
    QString securityId; ///< the exchange's own code, "609801"
    QString exchange;
    QString name;
    QString spellCode; ///< first letters of the name's pinyin, for searches

    SecurityKind kind = SecurityKind::Share;
    QString subType; ///< the SecurityClass that the rules below come from
    QString board;   ///< market segment, "main"

    double price = 0;         ///< closing price of the last trading day before the scenario starts
    double tick = 0.01;       ///< price step, of at most four decimals
    int decimals = 2;         ///< of the tick and so of every price
    qint64 lot = 100;         ///< quantity step of buy orders and of volumes
    qint64 minQty = 100;      ///< of one order
    qint64 maxQty = 0;        ///< of one order
    qint64 displayStep = 100; ///< quantity step of an order ticket
    double multiplier = 1;    ///< money per price unit and share, bond or contract
    double interest = 0;      ///< bonds: accrued, for 100 of face value
    double limitRate = 0;     ///< largest change from the previous close within a day, as a part of it; 0: no limit
    double volatility = 1;    ///< of the price: 1 is about 1.5 % a day
    double feeRate = 0;       ///< the broker's fee, as a part of the amount
    double saleTaxRate = 0;   ///< the same, added to the fee of a sale
    double minFee = 0;        ///< the least fee of an order that is filled
    double marginRate = 0;    ///< futures: margin, as a part of the position's cost
    bool soldSameDay = false; ///< what was bought today may be sold today
    bool afterHours = false;  ///< trades after the close, at the closing price
    qint64 dailyVolume = 0;   ///< volume of a usual day, in shares, bonds or contracts
    QDate listed;             ///< first trading day; there is no candle before it

    /// The double nearest to the decimal price of that many ticks.
    double priceOf(qint64 ticks) const;

    /// A price in ticks, rounded to the nearest.
    qint64 ticksOf(double price) const;
};

/// The fewest decimals, up to four, that write the tick exactly; -1 when four are not enough.
int decimalsOf(double tick);

} // namespace sim
