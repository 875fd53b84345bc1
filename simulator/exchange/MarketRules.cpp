#include "exchange/MarketRules.h"

#include <algorithm>
#include <cmath>

namespace sim {

std::optional<SecurityClass> MarketRules::securityClass(const QString &subType) const
{
    const auto found = std::find_if(classes.begin(), classes.end(),
                                    [&](const SecurityClass &each) { return each.subType == subType; });
    return found == classes.end() ? std::nullopt : std::make_optional(*found);
}

PriceLimits MarketRules::limits(const Instrument &instrument, qint64 previousClose) const
{
    PriceLimits limits;
    if (instrument.limitRate > 0) {
        const qint64 reach = qMax<qint64>(1, std::llround(double(previousClose) * instrument.limitRate));
        limits.lower = instrument.priceOf(qMax<qint64>(1, previousClose - reach));
        limits.upper = instrument.priceOf(previousClose + reach);
        limits.highest = limits.upper;
    } else {
        limits.highest = instrument.priceOf(previousClose) * (1 + unlimitedRise);
    }
    return limits;
}

} // namespace sim
