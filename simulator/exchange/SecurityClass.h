#pragma once

#include "exchange/Instrument.h"

#include <QVector>

namespace sim {

/// The trading rules that all securities of one sub-type share.
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

    void applyTo(Instrument &instrument) const;
};

/// All there are.
const QVector<SecurityClass> &securityClasses();

/// Null when there is none.
const SecurityClass *securityClass(const QString &subType);

} // namespace sim
