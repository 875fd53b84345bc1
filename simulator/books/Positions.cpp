#include "books/Positions.h"

#include "exchange/Instrument.h"

namespace sim {

qint64 Position::closableQty() const
{
    return openingQty + (instrument->soldSameDay ? openedQty : 0) - closedQty - frozenQty;
}

Money Position::marketValue(double price) const
{
    return Money::rounded(price * double(qty()) * instrument->multiplier);
}

} // namespace sim
