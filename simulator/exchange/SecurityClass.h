#pragma once

#include "exchange/Instrument.h"

#include <QVector>

namespace sim {

/// What all securities of one sub-type share: the exchange's trading rules and the broker's terms. A plain value.
struct SecurityClass {
    QString subType; ///< unique
    SecurityKind kind;
    QString board;
    qint64 lot;
    qint64 minQty;
    qint64 maxQty;
    qint64 displayStep;
    double limitRate;
    double volatility;
    double feeRate;
    double saleTaxRate;
    double marginRate;
    bool soldSameDay;
    bool afterHours;
    double minFee;
    double tick; ///< price step, where a security has none of its own; 0: each has its own

    /// Copies all of it to the instrument. The tick only if there is one.
    void applyTo(Instrument &instrument) const;
};

/// The classes that the simulator knows.
const QVector<SecurityClass> &standardClasses();

} // namespace sim
