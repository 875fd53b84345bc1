#include "exchange/SecurityClass.h"

namespace sim {

const QVector<SecurityClass> &standardClasses()
{
    using K = SecurityKind;
    const auto t = [](const char *latin1) { return QString::fromLatin1(latin1); };
    // The volatility is at most six times the price limit: at volatility 1 no day moves farther than 14 %, so that a
    // price stays inside its limits without being clamped.
    static const QVector<SecurityClass> classes{
        // clang-format off
        // sub-type               kind       board           lot  min  max      shown limit vol.  fee       tax     margin sameDay hours minFee tick
        {t("MainShare"),          K::Share,  t("main"),      100, 100, 1000000, 100,  0.1,  0.6,  0.00025,  0.0005, 0,    false, false, 0,     0.01},
        {t("GrowthShare"),        K::Share,  t("growth"),    1,   200, 100000,  100,  0.2,  1.2,  0.00025,  0.0005, 0,    false, true,  0,     0.01},
        {t("ExchangeTradedFund"), K::Fund,   t("fund"),      100, 100, 1000000, 100,  0.1,  0.5,  0.0001,   0,      0,    false, false, 0,     0.001},
        {t("ListedOpenFund"),     K::Fund,   t("fund"),      100, 100, 1000000, 100,  0.1,  0.3,  0.0001,   0,      0,    false, false, 0,     0.001},
        {t("ConvertibleBond"),    K::Bond,   t("bond"),      10,  10,  100000,  10,   0.2,  0.7,  0.00002,  0,      0,    true,  false, 0,     0.001},
        {t("TreasuryBond"),       K::Bond,   t("bond"),      10,  10,  1000000, 10,   0,    0.05, 0.00002,  0,      0,    true,  false, 0,     0.001},
        {t("IndexFuture"),        K::Future, t("financial"), 1,   1,   50,      1,    0.1,  0.6,  0.000023, 0,      0.12, true,  false, 0,     0.2},
        {t("CommodityFuture"),    K::Future, t("commodity"), 1,   1,   500,     1,    0.08, 0.48, 0.000023, 0,      0.12, true,  false, 0,     0},
        // clang-format on
    };
    return classes;
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
    instrument.feeRate = feeRate;
    instrument.saleTaxRate = saleTaxRate;
    instrument.marginRate = marginRate;
    instrument.soldSameDay = soldSameDay;
    instrument.afterHours = afterHours;
    instrument.minFee = minFee;
    if (tick > 0) {
        instrument.tick = tick;
        instrument.decimals = decimalsOf(tick);
    }
}

} // namespace sim
