#include "recording/Replay.h"
#include "TerminalTest.h"
#include "gateway/Page.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace sim;
using testing::HasSubstr;
using traffic::Entry;

namespace {

/// A recording that the test writes by hand, for a terminal at normal speed, or another.
class ReplayTest : public TerminalTest {
protected:
    explicit ReplayTest(double speed = 1) : TerminalTest(speed, QTime(), true)
    {
        lines = recordingLine(RecordingHead());
    }

    void add(Entry::Kind kind, int milliseconds, const char *name = "", const QVariantList &args = {},
             bool isReply = false)
    {
        Entry entry;
        entry.kind = kind;
        entry.page = 1;
        entry.name = QLatin1String(name);
        entry.args = args;
        entry.isReply = isReply;
        entry.exchangeTime = scenario.start.addMSecs(milliseconds).toMSecsSinceEpoch();
        lines += recordingLine(entry);
    }

    void addReply(int milliseconds, const char *name, const QString &text)
    {
        add(Entry::Event, milliseconds, name, {text}, true);
    }

    Replay &start(Replay::Mode mode, std::chrono::milliseconds patience = std::chrono::seconds(30))
    {
        QFile file(folder.filePath(QStringLiteral("r.jsonl")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(lines);
        file.close();
        QString error;
        EXPECT_TRUE(reader.open(file.fileName(), error)) << qPrintable(error);
        replay = std::make_unique<Replay>(reader, terminal, mode, patience);
        QObject::connect(replay.get(), &Replay::called, [this](int, const RecordedEntry &call) {
            calls.append(call.name);
            times.append(terminal.now());
        });
        QObject::connect(replay.get(), &Replay::ended, [this](const Replay::Outcome &end) { outcome = end; });
        replay->start();
        return *replay;
    }

    QString awaitEnd()
    {
        EXPECT_TRUE(await([this] { return outcome.has_value(); }));
        return outcome ? QString(outcome->text).remove(reader.fileName() + QStringLiteral(": ")) : QString();
    }

    QDateTime after(int milliseconds) const { return scenario.start.addMSecs(milliseconds); }

    QTemporaryDir folder;
    QByteArray lines;
    RecordingReader reader;
    QStringList calls;
    QVector<QDateTime> times;
    std::optional<Replay::Outcome> outcome;
    std::unique_ptr<Replay> replay;
};

class FastReplayTest : public ReplayTest {
protected:
    FastReplayTest() : ReplayTest(1000) {}
};

const QString kUuid = QStringLiteral("u");
const QString kToken =
    QStringLiteral("{\"code\":\"0\",\"msg\":\"\",\"resultData\":\"SIM-7f3a9c41-T1001\",\"uuid\":\"u\"}");
constexpr int kHour = 3600 * 1000;

} // namespace

TEST_F(ReplayTest, CallsAreMadeAtTheirTimesWithoutWaitingForThem)
{
    add(Entry::PageOpened, 10);
    add(Entry::Call, 20, "Data_getToken_REQ", {kUuid});
    addReply(20, "Data_getToken_RES", kToken);
    add(Entry::Call, kHour, "Data_getToken_REQ", {kUuid});
    addReply(kHour, "Data_getToken_RES", kToken);
    add(Entry::PageClosed, kHour);
    start(Replay::Verify);
    EXPECT_EQ(QStringLiteral("2 calls, 2 replies: no difference"), awaitEnd());
    EXPECT_EQ(Replay::Outcome::Done, outcome->kind);
    EXPECT_EQ((QVector<QDateTime>{after(20), after(kHour)}), times);
}

TEST_F(ReplayTest, AReplyThatDiffersIsShownWithItsPlace)
{
    add(Entry::PageOpened, 10);
    add(Entry::Call, 20, "Data_getToken_REQ", {kUuid});
    addReply(20, "Data_getToken_RES", QString(kToken).replace(QStringLiteral("T1001"), QStringLiteral("T1002")));
    start(Replay::Verify);
    const QString text = awaitEnd();
    EXPECT_EQ(Replay::Outcome::Different, outcome->kind);
    EXPECT_THAT(text.toStdString(),
                HasSubstr("line 4: the reply to Data_getToken_REQ of page 1 (uuid \"\") differs at character 53\n"));
    EXPECT_THAT(text.toStdString(), HasSubstr("\n  recorded: …"));
    EXPECT_THAT(text.toStdString(), HasSubstr("\n  now:      …"));
}

TEST_F(ReplayTest, AReplyThatDoesNotComeIsADifference)
{
    add(Entry::PageOpened, 10);
    add(Entry::Call, 20, "Data_getKLineData_REQ",
        {kUuid, QStringLiteral("unknown"), QString(), QString(), QStringLiteral("1")});
    addReply(60, "Data_getKLineData_RES", QStringLiteral("{}"));
    start(Replay::Verify, std::chrono::milliseconds(1));
    EXPECT_EQ(QStringLiteral("line 4: the reply to Data_getKLineData_REQ of page 1 (uuid \"\") does not come"),
              awaitEnd());
    EXPECT_EQ(Replay::Outcome::Different, outcome->kind);
}

TEST_F(ReplayTest, AReplyThatWasNotRecordedIsADifference)
{
    add(Entry::PageOpened, 10);
    add(Entry::Call, 20, "Data_getToken_REQ", {kUuid});
    add(Entry::PageClosed, 30);
    start(Replay::Verify);
    EXPECT_THAT(
        awaitEnd().toStdString(),
        HasSubstr("line 4: before it page 1 gets a reply to Data_getToken_REQ (uuid \"u\") that was not recorded"));
    EXPECT_EQ(Replay::Outcome::Different, outcome->kind);
}

TEST_F(ReplayTest, ACallOfAPageThatIsNotOpenBreaksTheRecording)
{
    add(Entry::Call, 20, "Data_getToken_REQ", {kUuid});
    start(Replay::Verify);
    EXPECT_EQ(QStringLiteral("line 2: a call of a page that is not open"), awaitEnd());
    EXPECT_EQ(Replay::Outcome::Broken, outcome->kind);
}

TEST_F(ReplayTest, ABrokenLineEndsIt)
{
    add(Entry::PageOpened, 10);
    lines += "broken\n";
    start(Replay::Verify);
    EXPECT_EQ(QStringLiteral("line 3: not a JSON object"), awaitEnd());
    EXPECT_EQ(Replay::Outcome::Broken, outcome->kind);
}

TEST_F(ReplayTest, CommandsThatChangeMoreThanThePaceActAtTheirTimes)
{
    add(Entry::Command, 10, "speed 500");
    add(Entry::Command, 10, "pause");
    add(Entry::Command, 10, "halt 609801.SH");
    add(Entry::Command, 20, "fault silent-klines");
    add(Entry::Command, kHour, "burst 3");
    add(Entry::Command, kHour + 10, "jump 14:00:00");
    add(Entry::Command, 4 * kHour, "drop");
    start(Replay::Verify);
    EXPECT_EQ(QStringLiteral("0 calls, 0 replies: no difference"), awaitEnd());
    EXPECT_EQ(1, terminal.speed());
    EXPECT_FALSE(terminal.isPaused());
    EXPECT_TRUE(terminal.exchange().isHalted(QStringLiteral("609801.SH"), terminal.exchange().stepAt(after(kHour))));
    EXPECT_TRUE(terminal.faults().isOn(Fault::SilentKLines));
    EXPECT_EQ(after(4 * kHour), terminal.now());
    int orders = 0;
    const TradingDesk::Reader books = terminal.desk().read();
    for (const Order &order : books->orders())
        orders += order.entered == after(kHour) ? 1 : 0;
    EXPECT_EQ(3, orders);
}

TEST_F(ReplayTest, ATextThatIsNoCommandBreaksTheRecording)
{
    add(Entry::Command, 10, "stop 609801.SH");
    start(Replay::Verify);
    EXPECT_THAT(awaitEnd().toStdString(), HasSubstr("line 2: \"stop\" is not a command: there are pause, "));
    EXPECT_EQ(Replay::Outcome::Broken, outcome->kind);
}

TEST_F(ReplayTest, ACallDoesNotWaitForASlowServer)
{
    terminal.setSpeed(0.01); // the server would need months
    add(Entry::Command, 10, "fault slow-answers=600000");
    add(Entry::PageOpened, 10);
    add(Entry::Call, 20, "Trade_reqCancelOrder_REQ", {kUuid, QStringLiteral("nothing")});
    start(Replay::Verify);
    EXPECT_EQ(QStringLiteral("1 call, 0 replies: no difference"), awaitEnd());
    EXPECT_EQ(after(20), terminal.now());
}

TEST_F(ReplayTest, EachStepMakesOneCall)
{
    add(Entry::PageOpened, 10);
    add(Entry::Call, 20, "Data_getToken_REQ", {kUuid});
    add(Entry::Call, kHour, "Data_getLoginTrader_REQ", {kUuid});
    add(Entry::Call, 2 * kHour, "Data_getTraderList_REQ", {kUuid});
    start(Replay::Stepwise);
    replay->step();
    ASSERT_TRUE(await([this] { return calls.size() == 1; }));
    EXPECT_EQ(after(20), terminal.now());
    replay->step();
    replay->endAfterSteps();
    EXPECT_EQ(QStringLiteral("2 calls played"), awaitEnd());
    EXPECT_EQ(QStringList({QStringLiteral("Data_getToken_REQ"), QStringLiteral("Data_getLoginTrader_REQ")}), calls);
    EXPECT_EQ((QVector<QDateTime>{after(20), after(kHour)}), times);
}

TEST_F(FastReplayTest, PagesInBrowsersSeeTheRecordedOrdersAtTheirTime)
{
    add(Entry::PageOpened, kHour);
    add(Entry::Call, kHour, "Trade_insertOrder_REQ",
        {kUuid, QStringLiteral("880010001"), QStringLiteral("609801.SH"), QString(), QStringLiteral("Buy"),
         QStringLiteral("Limit"), QStringLiteral("1.00"), QStringLiteral("100"), QStringLiteral("recorded")});
    Gateway gateway(QString(), {});
    ASSERT_TRUE(gateway.listen(0));
    Page page(gateway);
    ASSERT_TRUE(page.awaitOpen());
    start(Replay::Timed);
    EXPECT_EQ(QStringLiteral("1 call played"), awaitEnd());
    EXPECT_EQ(QVector<QDateTime>{after(kHour)}, times);
    terminal.liftTimeLimit(); // it runs on
    EXPECT_TRUE(await([&] {
        for (const QJsonArray &push : page.heard("on_entrustUpdate")) {
            if (push.at(0).toString().contains(QStringLiteral("20250303110000")))
                return true;
        }
        return false;
    }));
}
