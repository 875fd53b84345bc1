#include "exchange/Instrument.h"

#include <cmath>

namespace sim {

namespace {

constexpr double kPowersOf10[] = {1, 10, 100, 1000, 10000};
constexpr int kMaxDecimals = 4;

} // namespace

double Instrument::priceOf(qint64 ticks) const
{
    // Dividing a whole number gives the double nearest to the decimal price; multiplying by 0.01 would not.
    const double scale = kPowersOf10[decimals];
    return double(ticks * std::llround(tick * scale)) / scale;
}

qint64 Instrument::ticksOf(double price) const
{
    return std::llround(price / tick);
}

int decimalsOf(double tick)
{
    for (int decimals = 0; decimals <= kMaxDecimals; ++decimals) {
        const double scaled = tick * kPowersOf10[decimals];
        if (std::abs(scaled - std::round(scaled)) < 1e-9)
            return decimals;
    }
    return -1;
}

} // namespace sim
