// Runs the real program twice, with the same calls of a page at the same exchange times, from the afternoon before a
// holiday over three settlements. What both runs record must be the same, byte for byte.
#include "Program.h"
#include "gateway/Controller.h"
#include "gateway/Page.h"
#include "platform/Scenario.h"

#include <QSet>
#include <QTemporaryDir>

#include <map>

using namespace sim;

namespace {

const QStringList kFunds{QStringLiteral("880010001"), QStringLiteral("880010002"), QStringLiteral("880010003"),
                         QStringLiteral("990020001"), QStringLiteral("990020002")};

/// The lines of a recording by their kind, without what comes at the pace of real time: quotes that are sent, pushes,
/// which the library gathers for 200 ms, the heartbeats of strategies, and the commands of the test.
std::map<QString, QList<QByteArray>> linesOf(const QString &recording)
{
    QFile file(recording);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    file.readLine(); // the head names the speed
    std::map<QString, QList<QByteArray>> lines;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine();
        const QString kind = QJsonDocument::fromJson(line).object().value(QStringLiteral("kind")).toString();
        static const QSet<QString> ofThePace{QStringLiteral("quote"), QStringLiteral("push"),
                                             QStringLiteral("command")};
        if (!ofThePace.contains(kind) && !line.contains("SimulatedStrategyBeat"))
            lines[kind].append(line);
    }
    return lines;
}

/// The program, which plays the week and records it. Time stands still unless it is told to go on.
class WeekRun {
public:
    explicit WeekRun(const QString &recording)
    {
        m_program.start(QStringLiteral(SIMULATOR_BINARY),
                        {QStringLiteral("--port"), QStringLiteral("0"), QStringLiteral("--scenario"),
                         QStringLiteral("week"), QStringLiteral("--speed"), QStringLiteral("0.01"),
                         QStringLiteral("--record"), recording});
        const QByteArray line = readLine(m_program);
        const int port = line.mid(line.lastIndexOf(':') + 1).chopped(2).toInt();
        m_control = std::make_unique<Controller>(port);
        EXPECT_EQ(QString(), m_control->run(QStringLiteral("pause")));
        jump("2025-05-30 14:40:00");
        m_page = std::make_unique<Page>(port);
        EXPECT_TRUE(m_page->awaitOpen());
    }

    void jump(const char *time) { EXPECT_EQ(QString(), m_control->run(QStringLiteral("jump ") + QLatin1String(time))); }

    /// Lets time run on by itself, far beyond that time of the day, and stops it.
    void letPass(int hour, int minute)
    {
        EXPECT_EQ(QString(), m_control->run(QStringLiteral("speed 200")));
        EXPECT_EQ(QString(), m_control->run(QStringLiteral("resume")));
        EXPECT_TRUE(await([&] {
            const qint64 time = qint64(m_control->state.value(QStringLiteral("time")).toDouble());
            return QDateTime::fromMSecsSinceEpoch(time, Qt::UTC).time() >= QTime(hour, minute);
        }));
        EXPECT_EQ(QString(), m_control->run(QStringLiteral("pause")));
    }

    /// Makes the call, and returns the text of its reply.
    QString call(const char *method, const QJsonArray &args) { return replyTo(begin(method, args)); }

    /// Sends the call, and returns its number.
    int begin(const char *method, QJsonArray args)
    {
        m_page->frames.clear();
        args.prepend(QStringLiteral("u%1").arg(++m_calls));
        m_page->invoke(method, args);
        return m_calls;
    }

    QString replyTo(int call)
    {
        const auto reply = [&] {
            for (int i = m_page->frames.size() - 1; i >= 0; --i) {
                if (m_page->event(i).endsWith(QLatin1String("_RES")) &&
                    m_page->uuid(i) == QStringLiteral("u%1").arg(call))
                    return i;
            }
            return -1;
        };
        if (!await([&] { return reply() >= 0; })) {
            ADD_FAILURE() << "no reply to call " << call;
            return QString();
        }
        return m_page->args(reply()).at(0).toString();
    }

    /// The identifier of the order that was placed.
    QString place(const QString &fund, const QString &symbol, const char *side, const char *type, const char *price,
                  int qty)
    {
        const QString reply =
            call("Trade_insertOrder_REQ", {fund, symbol, QString(), QLatin1String(side), QLatin1String(type),
                                           QLatin1String(price), QString::number(qty), QStringLiteral("t")});
        return QJsonDocument::fromJson(reply.toUtf8())[QLatin1String("resultData")][QLatin1String("orderID")]
            .toString();
    }

    /// Asks for all lists and figures.
    void look()
    {
        call("Data_getEntrustList_REQ", {QStringLiteral("{}"), 0, 0});
        call("Data_getExecutionList_REQ", {QStringLiteral("{}"), 0, 0});
        for (const QString &fund : kFunds) {
            call("Data_getPositionList_REQ", {fund, QString()});
            call("Data_getAsset_REQ", {fund});
        }
        call("Data_getCurrentTick_REQ", {QStringLiteral("609802.SH")});
    }

    /// Ends the program, so that all is written.
    void finish()
    {
        m_program.terminate();
        EXPECT_TRUE(m_program.waitForFinished(kPatienceMs));
        EXPECT_EQ(0, m_program.exitCode());
    }

private:
    QProcess m_program;
    std::unique_ptr<Controller> m_control;
    std::unique_ptr<Page> m_page;
    int m_calls = 0;
};

/// From the afternoon of a Friday to the morning of Thursday. Monday is a holiday.
void play(const QString &recording, bool isLive)
{
    const QString share = QStringLiteral("609801.SH");
    const QString halted = QStringLiteral("609802.SH"); // from Tuesday 10:00 to Wednesday 13:30
    const QString growth = QStringLiteral("689803.SH");
    const QString future = QStringLiteral("YL2506.CF");
    WeekRun run(recording);
    run.call("Sub_subscribe_REQ", {share + QLatin1Char(',') + future});
    run.place(kFunds[0], share, "Buy", "Market", "", 60000);
    run.place(kFunds[1], growth, "AfterHoursBuy", "AfterHours", "99.00", 400);
    run.place(kFunds[3], future, "BuyOpen", "Market", "", 2);
    run.place(kFunds[4], future, "BuyClose", "Limit", "3600.0", 1);
    const QString waits = run.place(kFunds[0], share, "Buy", "Limit", "17.00", 300);
    run.place(kFunds[0], share, "Buy", "Limit", "17.01", 300);
    run.look();
    run.jump("2025-05-30 14:40:30");
    run.call("Trade_reqCancelOrder_REQ", {waits});
    run.look();
    run.jump("2025-05-30 15:30:00");
    run.place(kFunds[0], share, "Buy", "Limit", "18.00", 300); // for the next day
    run.look();
    run.jump("2025-05-30 16:00:00");
    run.look();
    run.jump("2025-06-03 09:00:00");
    run.look();
    run.jump("2025-06-03 09:25:00");
    run.look();
    const int candles =
        run.begin("Data_getKLineData_REQ", {share, QStringLiteral("20250529"), QString(), QStringLiteral("1")});
    run.call("Data_getToken_REQ", {}); // behind it; candles come when time goes on
    run.jump("2025-06-03 10:05:00");
    run.replyTo(candles);
    run.place(kFunds[0], halted, "Buy", "Market", "", 100);
    for (const QString &fund : {kFunds[0], kFunds[2]})
        run.place(fund, share, "Buy", "Market", "", 200000); // fills at one change of the quotes after the other
    run.look();
    if (isLive)
        run.letPass(10, 10);
    for (const char *time : {"2025-06-03 16:00:00", "2025-06-04 09:00:00", "2025-06-04 13:35:00", "2025-06-04 16:00:00",
                             "2025-06-05 09:31:00"}) {
        run.jump(time);
        run.place(kFunds[2], halted, "Buy", "Market", "", 1000);
        run.look();
    }
    run.finish();
}

} // namespace

TEST(SameRun, TwoRunsOfTheProgramAreTheSameByteForByte)
{
    const QTemporaryDir folder;
    const QString one = folder.filePath(QStringLiteral("one.jsonl"));
    const QString other = folder.filePath(QStringLiteral("other.jsonl"));
    play(one, false); // all is played by the jumps
    play(other, true);
    const auto lines = linesOf(one);
    const auto otherLines = linesOf(other);
    QByteArray all;
    for (const auto &[kind, list] : lines) {
        const auto same = otherLines.find(kind);
        ASSERT_NE(same, otherLines.end()) << qPrintable(kind);
        EXPECT_EQ(list.size(), same->second.size()) << qPrintable(kind);
        for (int i = 0; i < qMin(list.size(), same->second.size()); ++i)
            ASSERT_EQ(list[i].toStdString(), same->second[i].toStdString());
        all += list.join();
    }
    EXPECT_EQ(lines.size(), otherLines.size());
    EXPECT_GT(lines.at(QStringLiteral("reply")).size(), 80);
    EXPECT_GT(lines.at(QStringLiteral("event")).size(), 500);
    for (const char *seen : {"当日有效，收市后失效", "保证金不足，强制平仓", "证券停牌，不能委托", "PartlyFilled",
                             "OrdersLoaded\",\"time\":\"2025-06-03 09:00:00.000"})
        EXPECT_TRUE(all.contains(seen)) << seen;
}
