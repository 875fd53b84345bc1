#include "platform/Scenario.h"
#include "exchange/Listing.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>

using namespace sim;

namespace {

struct Outcome {
    bool ok = false;
    Scenario scenario;
    QString error; ///< its lines without the file's name
};

Outcome read(const QByteArray &json)
{
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("s.json")));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(json);
    file.close();
    Outcome outcome;
    outcome.ok = Scenario::read(file.fileName(), outcome.scenario, outcome.error);
    outcome.error.remove(file.fileName() + QLatin1Char(':'));
    return outcome;
}

QByteArray contentsOf(const char *name)
{
    QFile file(QStringLiteral(SCENARIO_CASES "/") + QLatin1String(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
    return file.readAll();
}

const QByteArray &good()
{
    static const QByteArray json = contentsOf("good.json");
    return json;
}

/// One of cases.json: the good scenario, edited, and what is said about it. The test of the JSON Schema has the same
/// cases.
struct Case {
    std::string name;
    QByteArray json;
    QStringList errors; ///< without the file's name
};

void PrintTo(const Case &each, std::ostream *stream)
{
    *stream << each.name;
}

std::vector<Case> allCases()
{
    std::vector<Case> cases;
    for (const QJsonValue value : QJsonDocument::fromJson(contentsOf("cases.json")).array()) {
        Case each{value[QLatin1String("name")].toString().toStdString(), good(), {}};
        for (const QJsonValue edit : value[QLatin1String("edits")].toArray()) {
            const QByteArray from = edit[0].toString().toUtf8();
            const QByteArray to = edit[1].toString().toUtf8();
            EXPECT_TRUE(each.json.contains(from)) << each.name;
            each.json = from.isEmpty() ? to : each.json.replace(from, to);
        }
        for (const QJsonValue error : value[QLatin1String("errors")].toArray())
            each.errors.append(error.toString());
        cases.push_back(each);
    }
    return cases;
}

class ScenarioCase : public testing::TestWithParam<Case> {};

} // namespace

TEST(Scenario, AValidFileIsReadCompletely)
{
    const Outcome outcome = read(good());
    ASSERT_TRUE(outcome.ok) << qPrintable(outcome.error);
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
    EXPECT_EQ(20, scenario.busDelay);
}

TEST(Scenario, AByteOrderMarkIsNoMistakeAndNoColumn)
{
    EXPECT_TRUE(read("\xef\xbb\xbf" + good()).ok);
    EXPECT_EQ(QStringLiteral("1:1: must be an object"), read("\xef\xbb\xbf[]").error);
}

TEST(Scenario, TheBuiltInFilesAreValid)
{
    const QStringList names = Scenario::builtInNames();
    EXPECT_EQ(QStringList({QStringLiteral("default"), QStringLiteral("quiet"), QStringLiteral("storm"),
                           QStringLiteral("bad-day"), QStringLiteral("large"), QStringLiteral("week")}),
              names);
    for (const QString &name : names) {
        Scenario scenario;
        QString error;
        EXPECT_TRUE(Scenario::read(Scenario::builtIn(name), scenario, error)) << qPrintable(error);
    }
    EXPECT_EQ(QString(), Scenario::builtIn(QStringLiteral("Default")));
}

TEST(Scenario, TheLargeOneIsLarge)
{
    Scenario scenario;
    QString error;
    ASSERT_TRUE(Scenario::read(Scenario::builtIn(QStringLiteral("large")), scenario, error)) << qPrintable(error);
    EXPECT_EQ(50000, scenario.securities.size() + scenario.generatedSecurities);
    EXPECT_EQ(100, scenario.fundAccounts.size());
    EXPECT_EQ(100000, scenario.fundAccounts.size() * scenario.opening.orders);
}

TEST(Scenario, TheOpeningHasDefaults)
{
    const Scenario usual = read(good()).scenario;
    EXPECT_EQ(80, usual.opening.orders);
    EXPECT_EQ(OpeningTerms().positions, usual.opening.positions);
    QByteArray json = good();
    json.replace("\"seed\"", "\"generatedOrders\": 7, \"generatedPositions\": {\"funds\": 5}, \"seed\"");
    const Scenario other = read(json).scenario;
    EXPECT_EQ(7, other.opening.orders);
    EXPECT_EQ(5, other.opening.positions[SecurityKind::Fund]);
    EXPECT_EQ(12, other.opening.positions[SecurityKind::Share]);
}

TEST(Scenario, TheRulesDifferOnlyWhereTheFileSaysSo)
{
    QByteArray json = good();
    json.replace("\"seed\"", "\"busDelay\": 5, \"rules\": {\"participation\": 0.25, \"subTypes\": {\"IndexFuture\": "
                             "{\"largest\": 7, \"margin\": 0.3, \"priceLimit\": 0.05}}}, \"seed\"");
    const Outcome outcome = read(json);
    ASSERT_TRUE(outcome.ok) << qPrintable(outcome.error);
    EXPECT_EQ(5, outcome.scenario.busDelay);
    EXPECT_EQ(0.25, outcome.scenario.rules.participation);
    EXPECT_EQ(MarketRules().unlimitedRise, outcome.scenario.rules.unlimitedRise);
    const Instrument &future = outcome.scenario.securities[0];
    EXPECT_EQ(7, future.maxQty);
    EXPECT_EQ(0.3, future.marginRate);
    EXPECT_EQ(0.05, future.limitRate);
    EXPECT_DOUBLE_EQ(0.3, future.volatility); // so that prices stay inside the limit
    EXPECT_EQ(0.000023, future.feeRate);
}

TEST(Scenario, TheStormAndTheBadDayAreWhatTheyAreCalled)
{
    Scenario storm;
    Scenario badDay;
    QString error;
    ASSERT_TRUE(Scenario::read(Scenario::builtIn(QStringLiteral("storm")), storm, error)) << qPrintable(error);
    EXPECT_LE(600, storm.generatedSecurities); // as many ticks come in three seconds
    EXPECT_LT(0, storm.orderFlow.ordersPerSecond);
    ASSERT_TRUE(Scenario::read(Scenario::builtIn(QStringLiteral("bad-day")), badDay, error)) << qPrintable(error);
    EXPECT_FALSE(badDay.faults.isEmpty());
    EXPECT_FALSE(badDay.timeline.isEmpty());
}

TEST(Scenario, FaultsAndTimelineAreRead)
{
    QByteArray json = good();
    json.replace("\"seed\"", "\"faults\": {\"silent-klines\": false, \"refuse-orders\": 2}, \"timeline\": [{\"after\": "
                             "1.5, \"do\": \"burst 7\"}, {\"at\": \"2025-03-03 10:00:01\", \"do\": \"clear\"}], "
                             "\"orderFlow\": {\"fundAccount\": \"F1\", \"ordersPerSecond\": 3}, \"seed\"");
    const Outcome outcome = read(json);
    ASSERT_TRUE(outcome.ok) << qPrintable(outcome.error);
    const Scenario &scenario = outcome.scenario;
    ASSERT_EQ(2, scenario.faults.size());
    EXPECT_EQ(Fault::SilentKLines, scenario.faults[0].fault);
    EXPECT_EQ(0, scenario.faults[0].value);
    EXPECT_EQ(2, scenario.faults[1].value);
    ASSERT_EQ(2, scenario.timeline.size());
    EXPECT_EQ(scenario.start.addMSecs(1500), scenario.timeline[0].time);
    EXPECT_EQ(7, scenario.timeline[0].command.count);
    EXPECT_EQ(scenario.start.addSecs(1), scenario.timeline[1].time);
    EXPECT_EQ(CommandName::Clear, scenario.timeline[1].command.name);
    EXPECT_EQ(QStringLiteral("F1"), scenario.orderFlow.fundAccount);
    EXPECT_EQ(3, scenario.orderFlow.ordersPerSecond);
}

TEST(Scenario, HolidaysAndHaltsAreRead)
{
    EXPECT_TRUE(read(good()).scenario.halts.isEmpty());
    QByteArray json = good();
    json.replace(
        "\"seed\"",
        "\"holidays\": [\"2025-03-05\"], \"halts\": [{\"symbol\": \"1.SH\", \"from\": \"2025-03-04 10:00:00\"}, "
        "{\"symbol\": \"1.SH\", \"from\": \"2025-03-04 11:00:00\", \"until\": \"2025-03-06 10:00:00\"}], \"seed\"");
    const Outcome outcome = read(json);
    ASSERT_TRUE(outcome.ok) << qPrintable(outcome.error);
    EXPECT_FALSE(outcome.scenario.rules.calendar.trades(QDate(2025, 3, 5)));
    EXPECT_TRUE(outcome.scenario.rules.calendar.trades(QDate(2025, 3, 4)));
    ASSERT_EQ(2, outcome.scenario.halts.size());
    EXPECT_EQ(QStringLiteral("1.SH"), outcome.scenario.halts[0].symbol);
    EXPECT_EQ(QDateTime(QDate(2025, 3, 4), QTime(10, 0), Qt::UTC), outcome.scenario.halts[0].from);
    EXPECT_FALSE(outcome.scenario.halts[0].until.isValid());
    EXPECT_EQ(QDateTime(QDate(2025, 3, 6), QTime(10, 0), Qt::UTC), outcome.scenario.halts[1].until);
}

TEST(Scenario, AnAccountBeginsWithWhatIsGiven)
{
    EXPECT_FALSE(read(good()).scenario.opening.given[QStringLiteral("F1")].positions);
    QByteArray json = good();
    json.replace("[\"C\"]", "[\"C\"], \"cash\": 1500000.5, \"positions\": [{\"symbol\": \"1.SH\", \"direction\": "
                            "\"short\", \"qty\": 3, \"price\": 3900.2}], \"orders\": [{\"symbol\": \"1.SH\", \"side\": "
                            "\"BuyClose\", \"qty\": 2, \"price\": 3850}]");
    const Outcome outcome = read(json);
    ASSERT_TRUE(outcome.ok) << qPrintable(outcome.error);
    const GivenOpening given = outcome.scenario.opening.given[QStringLiteral("F1")];
    EXPECT_EQ(1500000.5, given.cash);
    ASSERT_TRUE(given.positions && given.positions->size() == 1);
    EXPECT_TRUE(given.positions->first().isShort);
    EXPECT_EQ(3, given.positions->first().qty);
    EXPECT_EQ(3900.2, given.positions->first().price);
    ASSERT_EQ(1, given.orders.size());
    EXPECT_EQ(Side::BuyClose, given.orders[0].side);
    EXPECT_EQ(3850, given.orders[0].price);
}

TEST(Scenario, FeesMarginsAndTicksCanDiffer)
{
    QByteArray json = good();
    json.replace("\"multiplier\": 300", "\"margin\": 0.07, \"multiplier\": 300");
    json.replace("\"seed\"", "\"rules\": {\"subTypes\": {\"IndexFuture\": {\"minimumFee\": 5.5, \"tick\": 0.4}, "
                             "\"MainShare\": {\"afterHours\": true}}}, \"seed\"");
    const Outcome outcome = read(json);
    ASSERT_TRUE(outcome.ok) << qPrintable(outcome.error);
    EXPECT_EQ(0.07, outcome.scenario.securities[0].marginRate);
    EXPECT_EQ(5.5, outcome.scenario.securities[0].minFee);
    EXPECT_EQ(0.2, outcome.scenario.securities[0].tick); // its own
    EXPECT_EQ(0.4, outcome.scenario.rules.securityClass(QStringLiteral("IndexFuture"))->tick);
    EXPECT_TRUE(outcome.scenario.rules.securityClass(QStringLiteral("MainShare"))->afterHours);
}

TEST(Scenario, ASecurityWithoutATickHasThatOfItsSubType)
{
    QByteArray json = good();
    json.replace("\"tick\": 0.2,", "");
    json.replace("\"seed\"",
                 "\"rules\": {\"subTypes\": {\"IndexFuture\": {\"tick\": 0.4}, \"TreasuryBond\": {\"tick\": "
                 "0.5}, \"MainShare\": {\"tick\": 0.05}}}, \"seed\"");
    const Outcome outcome = read(json);
    ASSERT_TRUE(outcome.ok) << qPrintable(outcome.error);
    EXPECT_EQ(0.4, outcome.scenario.securities[0].tick);
    EXPECT_EQ(1, outcome.scenario.securities[0].decimals);
    EXPECT_EQ(0.005, outcome.scenario.securities[1].tick); // its own
    EXPECT_EQ(3, outcome.scenario.securities[1].decimals);
    const QVector<Instrument> all =
        listing(outcome.scenario.securities, 100, 5, QDate(2025, 3, 3), outcome.scenario.rules);
    int shares = 0;
    for (const Instrument &security : all) {
        if (security.subType == QLatin1String("MainShare")) {
            ++shares;
            EXPECT_EQ(0.05, security.tick);
            EXPECT_EQ(security.price, security.priceOf(security.ticksOf(security.price)));
        }
    }
    EXPECT_EQ(47, shares);
}

TEST(Scenario, TheQuantitiesOfASubTypeCanDiffer)
{
    QByteArray json = good();
    json.replace("\"seed\"",
                 "\"rules\": {\"subTypes\": {\"IndexFuture\": {\"step\": 2, \"smallest\": 4, \"largest\": 8, "
                 "\"shownStep\": 6}}}, \"seed\"");
    const Outcome outcome = read(json);
    ASSERT_TRUE(outcome.ok) << qPrintable(outcome.error);
    const Instrument &future = outcome.scenario.securities[0];
    EXPECT_EQ(2, future.lot);
    EXPECT_EQ(4, future.minQty);
    EXPECT_EQ(8, future.maxQty);
    EXPECT_EQ(6, future.displayStep);
}

TEST(Scenario, OneAccountOfTheDefaultHasTwoTradingAccounts)
{
    Scenario scenario;
    QString error;
    ASSERT_TRUE(Scenario::read(Scenario::defaultFile(), scenario, error)) << qPrintable(error);
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

TEST_P(ScenarioCase, HasTheseMistakes)
{
    const Outcome outcome = read(GetParam().json);
    EXPECT_EQ(GetParam().errors.join(QLatin1Char('\n')), outcome.error);
    EXPECT_EQ(GetParam().errors.isEmpty(), outcome.ok);
}

INSTANTIATE_TEST_SUITE_P(All, ScenarioCase, testing::ValuesIn(allCases()),
                         [](const auto &info) { return info.param.name; });
