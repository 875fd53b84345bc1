#include "exchange/Listing.h"

#include "exchange/Exchange.h"
#include "exchange/TestClock.h"

#include <gtest/gtest.h>

#include <QMap>
#include <QSet>

#include <cmath>

using namespace sim;

namespace {

constexpr quint64 kSeed = 20250303;
constexpr int kCount = 300;
const QDate kStart(2025, 3, 3);

const QVector<Instrument> &generated()
{
    static const QVector<Instrument> list = listing({}, kCount, kSeed, kStart);
    return list;
}

bool isSame(const Instrument &a, const Instrument &b)
{
    return a.symbol == b.symbol && a.name == b.name && a.spellCode == b.spellCode && a.price == b.price &&
           a.interest == b.interest && a.dailyVolume == b.dailyVolume && a.listed == b.listed;
}

void expectUnique(const QVector<Instrument> &list)
{
    QSet<QString> symbols;
    QSet<QPair<QString, QString>> codes;
    for (const Instrument &instrument : list) {
        symbols.insert(instrument.symbol);
        codes.insert({instrument.securityId, instrument.exchange});
    }
    EXPECT_EQ(list.size(), symbols.size());
    EXPECT_EQ(list.size(), codes.size());
}

} // namespace

TEST(Listing, TheSameSeedGivesTheSameListAndAnotherSeedAnother)
{
    const QVector<Instrument> again = listing({}, kCount, kSeed, kStart);
    const QVector<Instrument> other = listing({}, kCount, kSeed + 1, kStart);
    ASSERT_EQ(kCount, generated().size());
    ASSERT_EQ(kCount, again.size());
    int same = 0;
    for (int i = 0; i < kCount; ++i) {
        EXPECT_TRUE(isSame(generated()[i], again[i])) << i;
        same += isSame(generated()[i], other[i]);
    }
    EXPECT_LT(same, kCount / 20);
}

TEST(Listing, GivenSecuritiesComeFirstAndAreListedOnce)
{
    const QVector<Instrument> given = generated().mid(40, 100) + generated().mid(280); // their codes are taken
    const QVector<Instrument> list = listing(given, kCount, kSeed, kStart);
    ASSERT_EQ(given.size() + kCount, list.size());
    for (int i = 0; i < given.size(); ++i)
        EXPECT_TRUE(isSame(given[i], list[i])) << i;
    expectUnique(list);
}

TEST(Listing, NamesAreUniqueAndSpelledLetterByLetter)
{
    expectUnique(generated());
    QSet<QString> names;
    for (const Instrument &instrument : generated()) {
        names.insert(instrument.name);
        ASSERT_EQ(instrument.name.size(), instrument.spellCode.size()) << qPrintable(instrument.name);
        for (int i = 0; i < instrument.name.size(); ++i) {
            const QChar letter = instrument.spellCode[i];
            const bool isPlain = instrument.name[i].unicode() < 128;
            EXPECT_TRUE(isPlain ? letter == instrument.name[i]
                                : letter >= QLatin1Char('A') && letter <= QLatin1Char('Z'))
                << qPrintable(instrument.spellCode);
        }
    }
    EXPECT_EQ(kCount, names.size());
}

TEST(Listing, EverySubTypeOccursWithItsRules)
{
    QMap<QString, int> counts;
    for (const Instrument &instrument : generated()) {
        ++counts[instrument.subType];
        const std::optional<SecurityClass> rules = MarketRules().securityClass(instrument.subType);
        ASSERT_TRUE(rules);
        EXPECT_EQ(rules->kind, instrument.kind);
        EXPECT_EQ(rules->board, instrument.board);
        EXPECT_EQ(rules->minQty, instrument.minQty);
    }
    EXPECT_EQ(standardClasses().size(), counts.size());
    EXPECT_EQ(141, counts.value(QStringLiteral("MainShare"))); // 47 of 100
}

TEST(Listing, PricesInterestAndListingsArePlausible)
{
    for (const Instrument &instrument : generated()) {
        EXPECT_EQ(instrument.price, instrument.priceOf(instrument.ticksOf(instrument.price)));
        EXPECT_GE(instrument.ticksOf(instrument.price), 300) << qPrintable(instrument.symbol);
        EXPECT_EQ(instrument.decimals, decimalsOf(instrument.tick));
        EXPECT_EQ(instrument.kind == SecurityKind::Bond, instrument.interest > 0);
        EXPECT_LT(instrument.interest, 5);
        EXPECT_EQ(instrument.kind == SecurityKind::Future, instrument.multiplier > 1);
        EXPECT_GT(instrument.dailyVolume, 0);
        EXPECT_LT(instrument.listed, kStart);
    }
}

TEST(Listing, APriceIsAtLeastOneTick)
{
    MarketRules rules;
    for (SecurityClass &each : rules.classes)
        each.tick = 1000;
    for (const Instrument &instrument : listing({}, kCount, kSeed, kStart, rules)) {
        EXPECT_EQ(1000, instrument.tick);
        EXPECT_GE(instrument.price, 1000) << qPrintable(instrument.symbol);
        EXPECT_GT(instrument.dailyVolume, 0);
    }
}

TEST(Listing, FuturesEndInAComingMonth)
{
    int futures = 0;
    for (const Instrument &instrument : generated()) {
        if (instrument.kind != SecurityKind::Future)
            continue;
        ++futures;
        const QString code = instrument.securityId.right(4);
        EXPECT_TRUE(instrument.name.endsWith(code));
        const int month = code.right(2).toInt();
        EXPECT_TRUE(month >= 1 && month <= 12) << month;
        EXPECT_GE(QDate(2000 + code.left(2).toInt(), month, 1), QDate(2025, 3, 1));
    }
    EXPECT_EQ(27, futures); // the rest to 100 per cent
}

TEST(Listing, AnyNumberOfSecuritiesCanBeGenerated)
{
    EXPECT_TRUE(listing({}, 0, kSeed, kStart).isEmpty());
    EXPECT_EQ(1, listing({}, 1, kSeed, kStart).size());
    const QVector<Instrument> most = listing(generated(), 1000, kSeed, kStart);
    EXPECT_EQ(1000 + kCount, most.size());
    expectUnique(most);
}

TEST(Listing, NoDayBreaksItsPriceLimits)
{
    const TestClock clock(at("2025-03-03 15:00:00"));
    const Exchange exchange(generated(), kSeed, kStart, clock);
    for (int i = 0; i < kCount; i += 12) {
        const Instrument &instrument = generated()[i];
        if (instrument.limitRate == 0)
            continue;
        const QVector<Candle> days =
            exchange.candles(instrument.symbol, at("2025-01-02 15:00:00"), QDateTime(), CandlePeriod::Day);
        for (int day = 1; day < days.size(); ++day) {
            const double before = days[day - 1].close;
            const double reach = before * instrument.limitRate + instrument.tick / 2;
            ASSERT_LE(days[day].high, before + reach) << qPrintable(instrument.symbol);
            ASSERT_GE(days[day].low, before - reach) << qPrintable(instrument.symbol);
        }
    }
}

TEST(SecurityClass, VolatilityIsSmallEnoughForThePriceLimit)
{
    for (const SecurityClass &each : standardClasses()) {
        EXPECT_TRUE(each.limitRate == 0 || each.volatility <= 6 * each.limitRate + 1e-9) << qPrintable(each.subType);
        EXPECT_EQ(0, each.minQty % each.lot);
        EXPECT_EQ(0, each.maxQty % each.lot);
    }
    EXPECT_FALSE(MarketRules().securityClass(QStringLiteral("NoSuchClass")));
}

TEST(Instrument, DecimalsOfATickAreAsFewAsPossible)
{
    EXPECT_EQ(0, decimalsOf(5));
    EXPECT_EQ(0, decimalsOf(1));
    EXPECT_EQ(1, decimalsOf(0.2));
    EXPECT_EQ(2, decimalsOf(0.02));
    EXPECT_EQ(3, decimalsOf(0.005));
    EXPECT_EQ(4, decimalsOf(0.0001));
    EXPECT_EQ(-1, decimalsOf(1.0 / 3));
}

TEST(Instrument, PricesAreTheNearestDoublesOfTheirDecimals)
{
    Instrument future;
    future.tick = 0.2;
    future.decimals = 1;
    EXPECT_EQ(3886.4, future.priceOf(19432));
    EXPECT_EQ(19432, future.ticksOf(3886.4));
    Instrument cotton;
    cotton.tick = 5;
    cotton.decimals = 0;
    EXPECT_EQ(13585, cotton.priceOf(2717));
    EXPECT_EQ(2717, cotton.ticksOf(13586));
}

TEST(Listing, TheLongestListHasUniqueNames)
{
    const QVector<Instrument> listed = listing({}, kMostGenerated, 7, QDate(2025, 3, 3));
    QSet<QString> names;
    QSet<QString> symbols;
    for (const Instrument &instrument : listed) {
        names.insert(instrument.name);
        symbols.insert(instrument.symbol);
    }
    EXPECT_EQ(kMostGenerated, listed.size());
    EXPECT_EQ(kMostGenerated, names.size());
    EXPECT_EQ(kMostGenerated, symbols.size());
}
