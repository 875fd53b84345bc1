#pragma once

#include "exchange/SecurityClass.h"
#include "exchange/TradingCalendar.h"

#include <optional>

namespace sim {

/// The prices at which a security may trade on one day. A plain value.
struct PriceLimits {
    double lower = 0; ///< both 0 when there is no limit
    double upper = 0;
    double highest = 0; ///< to set money aside at for an order without a price: the upper limit, or a guess without one

    bool areSet() const { return upper > 0; }
};

/// What decides trading days, lots, fees, margin, price limits and fills. A plain value, by default the rules of
/// docs/vocabulary.md. Whoever builds a market hands it to the listing and to the exchange; the trading desk takes it
/// from there.
struct MarketRules {
    QVector<SecurityClass> classes = standardClasses();
    TradingCalendar calendar;

    /// Without a price limit, money is set aside for a rise of this part above the previous close.
    double unlimitedRise = 0.2;

    // An order with a limit price of several lots fills in two parts with this probability; the first part is between
    // these shares of it.
    double splitProbability = 0.4;
    double smallestFirstPart = 0.25;
    double largestFirstPart = 0.75;

    /// For the orders of before the start: the part of a minute's volume that fills one order.
    double openingParticipation = 0.02;

    /// Nothing for an unknown sub-type.
    std::optional<SecurityClass> securityClass(const QString &subType) const;

    /// previousClose: in ticks. A limit is at least one tick away, however cheap the security is.
    PriceLimits limits(const Instrument &instrument, qint64 previousClose) const;
};

} // namespace sim
