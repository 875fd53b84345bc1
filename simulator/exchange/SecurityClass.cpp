#include "exchange/SecurityClass.h"

#include <algorithm>

namespace sim {

const QVector<SecurityClass> &securityClasses()
{
    using K = SecurityKind;
    const auto text = [](const char *latin1) { return QString::fromLatin1(latin1); };
    // Where there is a price limit the volatility is at most six times as large: at volatility 1 no day can move
    // farther than 14 %, so that the path of a price stays inside its limits by itself.
    static const QVector<SecurityClass> classes{
        // clang-format off
        // sub-type                  kind       board              lot  min  max      shown limit  volatility
        {text("MainShare"),          K::Share,  text("main"),      100, 100, 1000000, 100,  0.1,   0.6},
        {text("GrowthShare"),        K::Share,  text("growth"),    1,   200, 100000,  100,  0.2,   1.2},
        {text("ExchangeTradedFund"), K::Fund,   text("fund"),      100, 100, 1000000, 100,  0.1,   0.5},
        {text("ListedOpenFund"),     K::Fund,   text("fund"),      100, 100, 1000000, 100,  0.1,   0.3},
        {text("ConvertibleBond"),    K::Bond,   text("bond"),      10,  10,  100000,  10,   0.2,   0.7},
        {text("TreasuryBond"),       K::Bond,   text("bond"),      10,  10,  1000000, 10,   0,     0.05},
        {text("IndexFuture"),        K::Future, text("financial"), 1,   1,   50,      1,    0.1,   0.6},
        {text("CommodityFuture"),    K::Future, text("commodity"), 1,   1,   500,     1,    0.08,  0.48},
        // clang-format on
    };
    return classes;
}

const SecurityClass *securityClass(const QString &subType)
{
    const QVector<SecurityClass> &classes = securityClasses();
    const auto found = std::find_if(classes.begin(), classes.end(),
                                    [&](const SecurityClass &each) { return each.subType == subType; });
    return found == classes.end() ? nullptr : found;
}

void SecurityClass::applyTo(Instrument &instrument) const
{
    instrument.kind = kind;
    instrument.subType = subType;
    instrument.board = board;
    instrument.lot = lot;
    instrument.minQty = minQty;
    instrument.maxQty = maxQty;
    instrument.displayStep = displayStep;
    instrument.limitRate = limitRate;
    instrument.volatility = volatility;
}

} // namespace sim
