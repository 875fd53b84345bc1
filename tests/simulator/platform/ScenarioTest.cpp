#include "platform/Scenario.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

using namespace sim;

namespace {

const char kGood[] = R"({
    "name": "n", "seed": 5, "start": "2025-03-03 10:00:00", "station": "PC",
    "traders": [{"id": "T1", "name": "甲"}, {"id": "T2", "name": "乙"}],
    "logins": [{"account": "T2", "token": "secret"}],
    "fundAccounts": [
        {"account": "S1", "name": "一", "property": "stock", "tradingAccounts": ["A", "B"]},
        {"account": "F1", "name": "期", "property": "futures", "tradingAccounts": ["C"]}],
    "algoPermissions": [{"fundAccount": "F1", "supportType": "X"}, {"fundAccount": "F1", "supportType": "Y"}],
    "securities": [{"symbol": "1.SH", "securityId": "1", "exchange": "SH", "name": "东", "spellCode": "D",
        "subType": "IndexFuture", "price": 3886.4, "tick": 0.2, "multiplier": 300, "dailyVolume": 1000,
        "listed": "2015-01-05"},
        {"symbol": "2.SH", "securityId": "2", "exchange": "SH", "name": "债", "spellCode": "Z",
        "subType": "TreasuryBond", "price": 101.235, "tick": 0.005, "interest": 1.25, "multiplier": 1,
        "dailyVolume": 0, "listed": "2016-01-05"}],
    "generatedSecurities": 12
})";

struct Outcome {
    bool ok = false;
    Scenario scenario;
    QString error; ///< without the file's name
    QString wholeError;
};

Outcome read(const QByteArray &json)
{
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("s.json")));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(json);
    file.close();
    Outcome outcome;
    outcome.ok = Scenario::read(file.fileName(), outcome.scenario, outcome.wholeError);
    outcome.error = outcome.wholeError;
    outcome.error.remove(file.fileName() + QStringLiteral(": "));
    return outcome;
}

struct Mistake {
    const char *name;
    const char *from; ///< of the good scenario
    const char *to;
    const char *error;
};

void PrintTo(const Mistake &mistake, std::ostream *stream)
{
    *stream << mistake.name;
}

class ScenarioMistake : public testing::TestWithParam<Mistake> {};

const Mistake kMistakes[] = {
    {"NotJson", "\"seed\": 5", "\"seed\": five", "not JSON: illegal value at byte "},
    {"NoObject", kGood, "[]", "must be an object"},
    {"MissingKey", "\"seed\": 5,", "", "seed: is missing"},
    {"UnknownKey", "\"seed\"", "\"sede\": 1, \"seed\"", "sede: is not a known key"},
    {"UnknownKeyBelow", "\"tick\": 0.2", "\"tick\": 0.2, \"ticks\": 1", "securities[0].ticks: is not a known key"},
    {"WrongType", "\"n\"", "7", "name: must be a text"},
    {"EmptyText", "\"PC\"", "\"\"", "station: must not be empty"},
    {"NegativeSeed", "\"seed\": 5", "\"seed\": -5", "seed: must be a whole number from 0 to 9007199254740992"},
    {"BrokenSeed", "\"seed\": 5", "\"seed\": 5.5", "seed: must be a whole number from 0 to 9007199254740992"},
    {"SeedIsText", "\"seed\": 5", "\"seed\": \"5\"", "seed: must be a number"},
    {"BadStart", "2025-03-03 10", "2025-03-33 10", "start: must be a date and time like 2025-03-03 10:00:00"},
    {"NoTraders", "[{\"id\": \"T1\", \"name\": \"甲\"}, {\"id\": \"T2\", \"name\": \"乙\"}]", "[]",
     "traders: must not be empty"},
    {"TradersNoArray", "\"traders\": [{\"id\": \"T1\", \"name\": \"甲\"}, {\"id\": \"T2\", \"name\": \"乙\"}]",
     "\"traders\": {}", "traders: must be an array"},
    {"TraderNoObject", "{\"id\": \"T1\", \"name\": \"甲\"}", "\"T1\"", "traders[0]: must be an object"},
    {"TraderTwice", "\"T1\"", "\"T2\"", "traders[1].id: \"T2\" is there twice"},
    {"LoginNoTrader", "\"account\": \"T2\"", "\"account\": \"T3\"",
     "logins[0].account: \"T3\" is not one of the traders"},
    {"LoginTwice", "[{\"account\": \"T2\", \"token\": \"secret\"}",
     "[{\"account\": \"T2\", \"token\": \"x\"}, {\"account\": \"T2\", \"token\": \"y\"}",
     "logins[1].account: \"T2\" is there twice"},
    {"LoginNoFolder", "T2", "../T2", "logins[0].account: \"../T2\" cannot name a folder"},
    {"FundTwice", "\"F1\"", "\"S1\"", "fundAccounts[1].account: \"S1\" is there twice"},
    {"BadProperty", "\"futures\"", "\"bonds\"", "fundAccounts[1].property: must be \"stock\" or \"futures\""},
    {"NoTradingAccount", "[\"C\"]", "[]", "fundAccounts[1].tradingAccounts: must not be empty"},
    {"TradingAccountNoText", "[\"C\"]", "[3]", "fundAccounts[1].tradingAccounts: must hold texts that are not empty"},
    {"TradingAccountTwice", "\"C\"", "\"A\"", "fundAccounts[1].tradingAccounts: \"A\" is there twice"},
    {"PermissionOfAnUnknownFund", "\"fundAccount\": \"F1\"", "\"fundAccount\": \"F2\"",
     "algoPermissions[0].fundAccount: \"F2\" is not one of the fund accounts"},
    {"PermissionTwice", "\"Y\"", "\"X\"", "algoPermissions[1].fundAccount: \"F1\" has \"X\" twice"},
    {"PermissionWithoutType", "\"supportType\": \"X\"", "\"supportType\": \"\"",
     "algoPermissions[0].supportType: must not be empty"},
    {"PermissionsMissing", "\"algoPermissions\"", "\"permissions\"", "algoPermissions: is missing"},
    {"SymbolTwice", "2.SH", "1.SH", "securities[1].symbol: \"1.SH\" is there twice"},
    {"CodeTwice", "\"securityId\": \"2\"", "\"securityId\": \"1\"", "securities[1].securityId: \"1\" is there twice"},
    {"UnknownSubType", "IndexFuture", "Future", "securities[0].subType: \"Future\" is not a known sub-type"},
    {"InterestOfAFuture", "\"tick\": 0.2", "\"tick\": 0.2, \"interest\": 0",
     "securities[0].interest: is not a known key"},
    {"BondWithoutInterest", "\"interest\": 1.25,", "", "securities[1].interest: is missing"},
    {"NegativeInterest", "1.25", "-1.25", "securities[1].interest: must be at least 0 and below 100"},
    {"BadTick", "\"tick\": 0.2", "\"tick\": 0.33333",
     "securities[0].tick: must be a positive multiple of 0.0001, at most 1000"},
    {"ZeroTick", "\"tick\": 0.2", "\"tick\": 0",
     "securities[0].tick: must be a positive multiple of 0.0001, at most 1000"},
    {"TinyTick", "\"tick\": 0.2", "\"tick\": 1e-12",
     "securities[0].tick: must be a positive multiple of 0.0001, at most 1000"},
    {"TooManyGenerated", "\"generatedSecurities\": 12", "\"generatedSecurities\": 1001",
     "generatedSecurities: must be a whole number from 0 to 1000"},
    {"PriceOffTick", "3886.4", "3886.5",
     "securities[0].price: must be a positive multiple of the tick, at most 1000000000 ticks"},
    {"NegativePrice", "3886.4", "-3886.4",
     "securities[0].price: must be a positive multiple of the tick, at most 1000000000 ticks"},
    {"HugeVolume", "\"dailyVolume\": 1000", "\"dailyVolume\": 1e300",
     "securities[0].dailyVolume: must be a whole number from 0 to 1000000000"},
    {"BadListing", "2015-01-05", "2015-1-5", "securities[0].listed: must be a date like 2015-01-05"},
    {"LateListing", "2015-01-05", "2025-03-03", "securities[0].listed: must be before the scenario starts"},
};

} // namespace

TEST(Scenario, AValidFileIsReadCompletely)
{
    const Outcome outcome = read(kGood);
    ASSERT_TRUE(outcome.ok) << qPrintable(outcome.wholeError);
    const Scenario &scenario = outcome.scenario;
    EXPECT_EQ(QStringLiteral("n"), scenario.name);
    EXPECT_EQ(5u, scenario.seed);
    EXPECT_EQ(QDateTime(QDate(2025, 3, 3), QTime(10, 0), Qt::UTC), scenario.start);
    EXPECT_EQ(QStringLiteral("PC"), scenario.station);
    EXPECT_EQ(QStringList({QStringLiteral("T1"), QStringLiteral("T2")}), scenario.traders.keys());
    EXPECT_EQ(QString::fromUtf8("乙"), scenario.traders.value(QStringLiteral("T2")));
    ASSERT_EQ(1, scenario.logins.size());
    EXPECT_EQ(QStringLiteral("secret"), scenario.logins[0].token);
    ASSERT_EQ(2, scenario.fundAccounts.size());
    EXPECT_EQ(StockFund, scenario.fundAccounts[0].property);
    EXPECT_EQ(FuturesFund, scenario.fundAccounts[1].property);
    EXPECT_EQ(2, scenario.fundAccounts[0].tradingAccounts.size());
    ASSERT_EQ(2, scenario.algoPermissions.size());
    EXPECT_EQ(QStringLiteral("F1"), scenario.algoPermissions[0].fundAccount);
    EXPECT_EQ(QStringLiteral("X"), scenario.algoPermissions[0].supportType);
    EXPECT_EQ(QStringLiteral("Y"), scenario.algoPermissions[1].supportType);
    ASSERT_EQ(2, scenario.securities.size());
    EXPECT_EQ(SecurityKind::Future, scenario.securities[0].kind);
    EXPECT_EQ(50, scenario.securities[0].maxQty);
    EXPECT_EQ(0.2, scenario.securities[0].tick);
    EXPECT_EQ(1, scenario.securities[0].decimals);
    EXPECT_EQ(3886.4, scenario.securities[0].price);
    EXPECT_EQ(QDate(2015, 1, 5), scenario.securities[0].listed);
    EXPECT_EQ(101.235, scenario.securities[1].price);
    EXPECT_EQ(1.25, scenario.securities[1].interest);
    EXPECT_EQ(12, scenario.generatedSecurities);
}

TEST(Scenario, ThePermissionsMayBeEmpty)
{
    QByteArray json(kGood);
    const int from = json.indexOf("[{\"fundAccount\"");
    json.replace(from, json.indexOf(']', from) - from, "[");
    const Outcome outcome = read(json);
    ASSERT_TRUE(outcome.ok) << qPrintable(outcome.wholeError);
    EXPECT_TRUE(outcome.scenario.algoPermissions.isEmpty());
}

TEST(Scenario, TheBuiltInFileIsValid)
{
    Scenario scenario;
    QString error;
    EXPECT_TRUE(Scenario::read(Scenario::defaultFile(), scenario, error)) << qPrintable(error);
    int withTwo = 0;
    for (const FundAccount &fund : qAsConst(scenario.fundAccounts))
        withTwo += fund.tradingAccounts.size() == 2;
    EXPECT_EQ(1, withTwo);
}

TEST(Scenario, AMissingFileIsReported)
{
    Scenario scenario;
    QString error;
    QFile missing(QStringLiteral("/no/such/file.json"));
    ASSERT_FALSE(missing.open(QIODevice::ReadOnly));
    EXPECT_FALSE(Scenario::read(missing.fileName(), scenario, error));
    EXPECT_EQ(QStringLiteral("/no/such/file.json: ") + missing.errorString(),
              error); // each system has words of its own
}

TEST_P(ScenarioMistake, IsReportedInOneLine)
{
    const Mistake &mistake = GetParam();
    QByteArray json(kGood);
    ASSERT_TRUE(json.contains(mistake.from));
    json.replace(mistake.from, mistake.to);

    const Outcome outcome = read(json);
    EXPECT_FALSE(outcome.ok);
    EXPECT_TRUE(outcome.error.startsWith(QString::fromUtf8(mistake.error))) << qPrintable(outcome.wholeError);
    EXPECT_TRUE(outcome.wholeError.contains(QStringLiteral("s.json: ")));
    EXPECT_FALSE(outcome.wholeError.contains(QLatin1Char('\n')));
}

INSTANTIATE_TEST_SUITE_P(All, ScenarioMistake, testing::ValuesIn(kMistakes),
                         [](const auto &info) { return std::string(info.param.name); });
