// Records a session in this process and plays it again with the real program.
#include "gateway/Page.h"
#include "recording/RecordedRun.h"

#include "common/WebConstants.h"

#include <QFileInfo>
#include <QSettings>

using namespace sim;
using namespace WebConstants;

namespace {

constexpr int kRounds = 5;
constexpr int kCallsWithoutReply = 2; // of a round

const QString kAccount = QStringLiteral("880010001");
const QString kSymbol = QStringLiteral("609801.SH");
const QString kHeld = QStringLiteral("609001.SH");
const QString kUuid = QStringLiteral("u");

/// Other processes have the same file.
QString settingOf(qint64 process)
{
    return QStringLiteral("verify/%1").arg(process);
}

struct Call {
    QString method;
    QJsonArray args; ///< behind the uuid
};

/// Each call of the protocol at least once. Orders and strategies are those of earlier answers.
QVector<Call> callsOf(int round, const QString &order, const QString &strategy)
{
    const QString all = QStringLiteral("{}");
    const QString limit = QStringLiteral("Limit");
    const QString buy = QStringLiteral("Buy");
    const QString qty = QStringLiteral("300");
    const QString none;
    const qint64 process = QCoreApplication::applicationPid();
    const QString list = QStringLiteral(
        R"([{"symbol":"609001.SH","exchange":"SH","orderSide":"Sell","priceType":"Limit","price":"13.69","qty":"1000"}])");
    return {
        {Method::Data_getToken, {}},
        {Method::Data_getLoginTrader, {}},
        {Method::Data_getTraderList, {}},
        {Method::Data_getFundAccountList, {1}},
        {Method::Data_getOPStation, {QStringLiteral("a"), QString::number(round)}},
        {Method::Data_getSymbolList, {QStringLiteral(R"({"symbolFilter":[{"securityType":"Bond"}]})")}},
        {Method::Data_getSymbolListWithDetail, {QStringLiteral(R"({"symbolFilter":[{"securityType":"Bond"}]})")}},
        {Method::Data_getSymbolDetail, {kSymbol}},
        {Method::Sub_subscribe, {kSymbol + QLatin1Char(',') + kHeld}},
        {Method::Data_getCurrentTick, {kSymbol}},
        {Method::Data_getKLineData, {kSymbol, QStringLiteral("20250303"), none, QStringLiteral("1")}},
        {Method::Data_getKLineData, {kSymbol, QStringLiteral("20250203"), none, QStringLiteral("2")}},
        {Method::Data_getUpsDownsAnalysis, {none, none, none}},
        {Method::Trade_insertOrder,
         {kAccount, kSymbol, none, buy, QStringLiteral("Market"), none, qty, QStringLiteral("t")}},
        {Method::Trade_insertOrderList, {kAccount, QStringLiteral("l"), list}},
        {Method::Data_getTradableQty, {kAccount, kSymbol, none, buy, limit, QStringLiteral("18.00"), none}},
        {Method::Trade_reqCancelOrder, {order}},
        {Method::Data_getEntrustList, {all, 0, 30}},
        {Method::Data_getExecutionList, {all, 0, 30}},
        {Method::Data_getPositionList, {kAccount, none}},
        {Method::Data_getAsset, {kAccount}},
        {Method::Data_getSetting, {settingOf(process)}},
        {Method::Data_saveSetting, {settingOf(process), QStringLiteral("value %1").arg(round)}},
        {Method::Data_getPermission, {kAccount, QStringLiteral("KFZ;SNB")}},
        {Method::Data_openPermissionMenu, {}},
        {Method::Vlx_queryStrategyStatus, {strategy, none}},
        {Method::Vlx_subStrategyMsg, {strategy, QStringLiteral("1")}},
        {Method::Vlx_sendCustomInfo, {strategy, QStringLiteral("hello")}},
        {Method::Vlx_stopStrategy, {strategy, none}},
        {Method::Vlx_queryStrategyStatus, {strategy, none}},
        {Method::UnSub_subscribe, {kHeld}},
        {Method::UnSub_subscribeAll, {}},
    };
}

QString textOf(const QJsonObject &reply, const QString &key)
{
    return reply.value(QStringLiteral("resultData")).toObject().value(key).toString();
}

QString settingsBesideTheProgram()
{
    QFile file(QFileInfo(QStringLiteral(SIMULATOR_BINARY)).path() + QStringLiteral("/work/T1001/WebSettings.ini"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

class VerifyTest : public testing::TestWithParam<double> {
protected:
    /// Records a session of two pages at the speed of the parameter. Returns the number of calls.
    int record()
    {
        {
            QSettings settings(SettingsFolder::fileOf(QStringLiteral("T1001")), QSettings::IniFormat);
            settings.setValue(settingOf(QCoreApplication::applicationPid()), QStringLiteral("from before"));
        }
        int calls = 0;
        run.record([&](Terminal &) {
            EXPECT_TRUE(run.head.settings.contains("from before"));
            Gateway gateway(QString(), {});
            EXPECT_TRUE(gateway.listen(0));
            for (int round = 0; round < kRounds; ++round)
                calls += callAll(gateway, round);
        });
        return calls;
    }

    RecordedRun run{GetParam()};

private:
    /// All calls, on a page of their own, without waiting between them.
    static int callAll(const Gateway &gateway, int round)
    {
        Page page(gateway);
        EXPECT_TRUE(page.awaitOpen());
        page.invoke("Trade_insertOrder_REQ",
                    {kUuid, kAccount, kSymbol, QString(), QStringLiteral("Buy"), QStringLiteral("Limit"),
                     QStringLiteral("17.00"), QStringLiteral("100"), QStringLiteral("o")});
        page.invoke("Vlx_startStrategy_REQ",
                    {kUuid, QStringLiteral("/grid.py"), 1, kAccount, QString(), QStringLiteral("mine")});
        const QString order = textOf(page.awaitObject("Trade_insertOrder_RES"), QStringLiteral("orderID"));
        const QString strategy = textOf(page.awaitObject("Vlx_startStrategy_RES"), QStringLiteral("strategyID"));
        const QVector<Call> calls = callsOf(round, order, strategy);
        for (const Call &call : calls) {
            QJsonArray args = call.args;
            args.prepend(kUuid);
            page.invoke(call.method.toLatin1().constData(), args);
        }
        EXPECT_TRUE(await([&] {
            int replies = 0;
            for (int i = 0; i < page.frames.size(); ++i)
                replies += page.event(i).endsWith(QLatin1String("_RES")) ? 1 : 0;
            return replies == 2 + calls.size() - kCallsWithoutReply;
        }));
        page.socket.close();
        EXPECT_TRUE(page.awaitClosed());
        return 2 + calls.size();
    }
};

} // namespace

TEST_P(VerifyTest, EveryCallIsAnsweredAsItWas)
{
    const int calls = record();
    const QString expected =
        QStringLiteral("%1 calls, %2 replies: no difference\n").arg(calls).arg(calls - kRounds * kCallsWithoutReply);
    for (int times = 1; times <= 2; ++times) {
        const RecordedRun::Outcome outcome = run.verify();
        EXPECT_EQ(expected.toStdString(), outcome.out.toStdString());
        EXPECT_EQ("", outcome.error.toStdString());
        EXPECT_EQ(0, outcome.status);
    }
    EXPECT_FALSE(settingsBesideTheProgram().contains(QStringLiteral("value 4"))) << "a replay has a folder of its own";
}

INSTANTIATE_TEST_SUITE_P(Speeds, VerifyTest, testing::Values(1, 10, 100, 1000),
                         [](const auto &info) { return std::to_string(int(info.param)); });

using VerifyChangedTest = VerifyTest;

TEST_P(VerifyChangedTest, AChangedReplyIsFoundAtItsLine)
{
    record();
    QFile recording(run.file);
    ASSERT_TRUE(recording.open(QIODevice::ReadWrite));
    QList<QByteArray> lines = recording.readAll().split('\n');
    int changed = 0;
    for (int i = 0; i < lines.size(); ++i) {
        if (lines[i].contains("\"kind\":\"reply\"") && lines[i].contains("Data_getAsset_RES"))
            changed = i; // the last one
    }
    ASSERT_NE(0, changed);
    lines[changed].replace("floatingProfit", "floatingProfiT");
    recording.resize(0);
    recording.write(lines.join('\n'));
    recording.close();
    const RecordedRun::Outcome outcome = run.verify();
    EXPECT_EQ(1, outcome.status);
    EXPECT_EQ(QString(), outcome.out);
    EXPECT_TRUE(outcome.error.startsWith(
        QStringLiteral("varnel-simulator: %1: line %2: the reply to Data_getAsset_REQ of page %3 (uuid \"u\") differs")
            .arg(run.file)
            .arg(changed + 1)
            .arg(kRounds)))
        << qPrintable(outcome.error);
}

INSTANTIATE_TEST_SUITE_P(Speeds, VerifyChangedTest, testing::Values(100),
                         [](const auto &info) { return std::to_string(int(info.param)); });
