#include "platform/StrategyPlatform.h"
#include "TerminalTest.h"

#include "CPackMessageCommon.h"
#include "CUnPackMessageCommon.h"
#include "Orlo_Keys.h"
#include "QvPresenterClass.h"
#include "Tessar_Fields.h"
#include "VarnelBusinessDataInterface.h"
#include "VarnelCefView.h"
#include "Varnel_Fields.h"

#include <QSemaphore>

using namespace sim;
using namespace Varnel_Fields;
using Tessar_Fields::Strategy::strategyID;
using Tessar_Fields::Strategy::strategyStatus;
using Tessar_Fields::System::textDescription;

namespace {

constexpr int kPatienceMs = 30000;
constexpr int kMode = 1;

const QString kUuid = QStringLiteral("uuid");
const QString kView = QStringLiteral("panelPtr");
const QString kExtension = QStringLiteral("ExtField");

int idOf(const QString &event)
{
    return VarnelBusinessDataInterface::GetOrloEventMsgIdByStr(event);
}

/// Talks to the platform as the library does.
class Client : public QvPresenterClass {
public:
    Client() : QvPresenterClass(QStringLiteral("client"), nullptr, IMessageInterface::WebThreadType)
    {
        SubEvent(pluginPid(), idOf(Orlo_Keys::EventMsgName::VELOX_TRANS_MSG_OUT), kMode);
    }

    /// Leaves before its members are destroyed: the bus may be about to call.
    ~Client() override { Terminal::instance().bus()->leave(pluginPid()); }

    void ask(const QString &type, const QVariantMap &fields)
    {
        CPackMessageCommon pack;
        pack.AddVaule(VeloxFields::msgSubEventType, type);
        for (auto field = fields.constBegin(); field != fields.constEnd(); ++field)
            pack.AddVaule(field.key(), field.value());
        auto *event = new CEventMessageCommon;
        event->SetSrcid(pluginPid());
        event->SetType(idOf(Orlo_Keys::EventMsgName::VELOX_TRANS_MSG_IN));
        event->SetMsg(pack.GetPackedMsg(0));
        PutEvent(pluginPid(), event);
    }

    void ProcEventMsg(QString, QVariant, QVariant data) override
    {
        CUnPackMessageCommon unpack;
        unpack.SetUnPackMsg(data, false);
        {
            const std::lock_guard lock(m_mutex);
            m_rows.append(unpack.GetRowValue());
        }
        m_arrived.release();
    }

    /// The next message that is no heartbeat: those come at any time.
    QVariantMap next()
    {
        QVariantMap row = take();
        while (isHeartbeat(row))
            row = take();
        return row;
    }

    QVariantMap nextHeartbeat()
    {
        QVariantMap row = take();
        while (!row.isEmpty() && !isHeartbeat(row))
            row = take();
        return row;
    }

private:
    static bool isHeartbeat(const QVariantMap &row)
    {
        return row.value(VeloxFields::strategyCustomMsg).toString().startsWith(QLatin1String("{\"heartbeat\""));
    }

    QVariantMap take()
    {
        EXPECT_TRUE(m_arrived.tryAcquire(1, kPatienceMs));
        const std::lock_guard lock(m_mutex);
        return m_rows.isEmpty() ? QVariantMap() : m_rows.takeFirst();
    }

    std::mutex m_mutex;
    QVector<QVariantMap> m_rows;
    QSemaphore m_arrived;
};

QString typeOf(const QVariantMap &row)
{
    return row.value(VeloxFields::msgSubEventType).toString();
}

class StrategyPlatformTest : public TerminalTest {
protected:
    explicit StrategyPlatformTest(double speed = kSpeed) : TerminalTest(speed) {}

    static QVariantMap goodStart()
    {
        return {{QStringLiteral("FilePath"), QStringLiteral("/strategies/grid.py")},
                {QStringLiteral("Language"), 1},
                {QStringLiteral("FundAccountList"),
                 QStringList({QStringLiteral("880010001"), QStringLiteral("990020001")})},
                {kUuid, QStringLiteral("u1")}};
    }

    QVariantMap startAnswer(const QVariantMap &request)
    {
        client.ask(VeloxValues::MSEventStartStrategyReq, request);
        const QVariantMap row = client.next();
        EXPECT_EQ(VeloxValues::MSEventStartStrategyRsp, typeOf(row));
        return row;
    }

    void expectStatus(const QString &id, const char *status)
    {
        const QVariantMap row = client.next();
        EXPECT_EQ(VeloxValues::MSEventStrategyStatusUpdate, typeOf(row));
        EXPECT_EQ(QVariant(id), row.value(strategyID));
        EXPECT_EQ(QVariant(QLatin1String(status)), row.value(strategyStatus));
    }

    QString startOne()
    {
        const QString id = startAnswer(goodStart()).value(strategyID).toString();
        expectStatus(id, "Starting");
        expectStatus(id, "Running");
        return id;
    }

    QVariantMap answerTo(const QString &request, const QString &id)
    {
        client.ask(request, {{strategyID, id}, {kUuid, QStringLiteral("u2")}, {kExtension, 5}});
        const QVariantMap row = client.next();
        EXPECT_EQ(QVariant(id), row.value(strategyID));
        EXPECT_EQ(QVariant(QStringLiteral("u2")), row.value(kUuid));
        EXPECT_EQ(QVariant(5), row.value(kExtension));
        return row;
    }

    Client client;
};

} // namespace

TEST_F(StrategyPlatformTest, AStrategyStartsAndThenRuns)
{
    const QVariantMap answer = startAnswer(goodStart());
    EXPECT_EQ(QVariant(QStringLiteral("0")), answer.value(textDescription));
    EXPECT_EQ(QVariant(QStringLiteral("Starting")), answer.value(strategyStatus));
    const QString id = answer.value(strategyID).toString();
    EXPECT_EQ(QStringLiteral("S20250303-0001"), id);
    expectStatus(id, "Starting");
    expectStatus(id, "Running");
    EXPECT_EQ(QStringLiteral("S20250303-0002"), startOne());
}

TEST_F(StrategyPlatformTest, TheAnswerReturnsTheFieldsOfTheRequest)
{
    QVariantMap request = goodStart();
    const QVariantMap extension{{QStringLiteral("deep"), QVariantList{1, QStringLiteral("two")}}};
    auto *const view =
        reinterpret_cast<VarnelCefView *>(quintptr(0x1230)); // a view that does not exist: it must not be dereferenced
    request.insert(kExtension, extension);
    request.insert(kView, QVariant::fromValue(view));
    const QVariantMap answer = startAnswer(request);
    EXPECT_EQ(QVariant(QStringLiteral("u1")), answer.value(kUuid));
    EXPECT_EQ(QVariant(extension), answer.value(kExtension));
    const QVariant named = answer.value(kView);
    ASSERT_EQ(qMetaTypeId<VarnelCefView *>(), named.userType());
    EXPECT_EQ(view, *static_cast<VarnelCefView *const *>(named.constData()));
}

TEST_F(StrategyPlatformTest, AnInvalidStartIsRefusedWithAReason)
{
    const struct {
        const char *field;
        QVariant value;
        const char *reason;
    } table[] = {
        {"FilePath", QString(), "策略文件路径为空"},
        {"Language", 0, "不支持的策略语言：0"},
        {"Language", 4, "不支持的策略语言：4"},
        {"FundAccountList", QStringList(), "没有资金账号"},
        {"FundAccountList", QStringList({QStringLiteral("880010001"), QStringLiteral("1")}), "资金账号不存在：1"},
        {"FundAccountList", QStringList({QString(), QStringLiteral("880010001")}), "资金账号不存在："},
    };
    for (const auto &row : table) {
        QVariantMap request = goodStart();
        request.insert(QLatin1String(row.field), row.value);
        const QVariantMap answer = startAnswer(request);
        EXPECT_EQ(QString::fromUtf8(row.reason), answer.value(textDescription).toString());
        EXPECT_EQ(QVariant(QString()), answer.value(strategyID));
        EXPECT_EQ(QVariant(QString()), answer.value(strategyStatus));
    }
    EXPECT_EQ(QStringLiteral("S20250303-0001"), startOne()) << "a refused start takes no number";
}

TEST_F(StrategyPlatformTest, EveryKnownLanguageStarts)
{
    for (int language = 1; language <= 3; ++language) {
        QVariantMap request = goodStart();
        request.insert(QStringLiteral("Language"), language);
        const QVariantMap answer = startAnswer(request);
        EXPECT_EQ(QVariant(QStringLiteral("0")), answer.value(textDescription));
        expectStatus(answer.value(strategyID).toString(), "Starting");
        expectStatus(answer.value(strategyID).toString(), "Running");
    }
}

TEST_F(StrategyPlatformTest, AStrategyStopsOnce)
{
    const QString id = startOne();
    const QVariantMap answer = answerTo(VeloxValues::MSEventStopStrategyReq, id);
    EXPECT_EQ(VeloxValues::MSEventStopStrategyRsp, typeOf(answer));
    EXPECT_EQ(QVariant(QStringLiteral("0")), answer.value(textDescription));
    EXPECT_EQ(QVariant(QStringLiteral("Stopping")), answer.value(strategyStatus));
    expectStatus(id, "Stopping");
    expectStatus(id, "Stopped");
    EXPECT_EQ(QStringLiteral("策略已停止：") + id,
              answerTo(VeloxValues::MSEventStopStrategyReq, id).value(textDescription).toString());
}

TEST_F(StrategyPlatformTest, AStrategyCanBeStoppedWhileItStarts)
{
    client.ask(VeloxValues::MSEventStartStrategyReq, goodStart());
    client.ask(VeloxValues::MSEventStopStrategyReq, {{strategyID, QStringLiteral("S20250303-0001")}});
    QStringList statuses;
    while (!statuses.contains(QStringLiteral("Stopped"))) {
        const QVariantMap row = client.next();
        ASSERT_FALSE(row.isEmpty());
        if (typeOf(row) == VeloxValues::MSEventStrategyStatusUpdate)
            statuses.append(row.value(strategyStatus).toString());
    }
    // It may or may not have reached Running, depending on timing; the order is fixed.
    statuses.removeAll(QStringLiteral("Running"));
    EXPECT_EQ(QStringList({QStringLiteral("Starting"), QStringLiteral("Stopping"), QStringLiteral("Stopped")}),
              statuses);
}

TEST_F(StrategyPlatformTest, AQueryReturnsTheStatus)
{
    const QString id = startOne();
    const QVariantMap running = answerTo(VeloxValues::MSEventQueryStrategyStatusReq, id);
    EXPECT_EQ(VeloxValues::MSEventQueryStrategyStatusRsp, typeOf(running));
    EXPECT_EQ(QVariant(QStringLiteral("0")), running.value(textDescription));
    EXPECT_EQ(QVariant(QStringLiteral("Running")), running.value(strategyStatus));

    answerTo(VeloxValues::MSEventStopStrategyReq, id);
    expectStatus(id, "Stopping");
    expectStatus(id, "Stopped");
    const QVariantMap stopped = answerTo(VeloxValues::MSEventQueryStrategyStatusReq, id);
    EXPECT_EQ(QVariant(QStringLiteral("0")), stopped.value(textDescription));
    EXPECT_EQ(QVariant(QStringLiteral("Stopped")), stopped.value(strategyStatus));
}

TEST_F(StrategyPlatformTest, AStrategyThatWasNotStartedIsUnknown)
{
    for (const QString &request : {VeloxValues::MSEventStopStrategyReq, VeloxValues::MSEventQueryStrategyStatusReq}) {
        for (const char *id : {"S20250303-0001", ""}) {
            const QVariantMap answer = answerTo(request, QLatin1String(id));
            EXPECT_EQ(QStringLiteral("策略不存在：") + QLatin1String(id), answer.value(textDescription).toString());
            EXPECT_EQ(QVariant(QString()), answer.value(strategyStatus));
        }
    }
}

TEST_F(StrategyPlatformTest, ARunningStrategyEchoesCustomMessages)
{
    const QString id = startOne();
    const auto send = [&](const QString &to, const char *text) {
        client.ask(VeloxValues::MSEventStrategyCustomMsg,
                   {{VeloxFields::strategyCustomMsgID, to}, {VeloxFields::strategyCustomMsg, QLatin1String(text)}});
    };
    send(QStringLiteral("S20250303-0002"), "to nobody");
    client.ask(VeloxValues::MSEventSubStrategyMsg, {{VeloxFields::strategyCustomMsgID, id}}); // has no answer
    client.ask(QStringLiteral("MSEventUnknown"), {});
    send(id, "say \"hi\"");
    send(id, "again");
    for (const char *echo : {"{\"count\":1,\"echo\":\"say \\\"hi\\\"\",\"strategyID\":\"S20250303-0001\"}",
                             "{\"count\":2,\"echo\":\"again\",\"strategyID\":\"S20250303-0001\"}"}) {
        const QVariantMap row = client.next();
        EXPECT_EQ(VeloxValues::MSEventStrategyCustomMsg, typeOf(row));
        EXPECT_EQ(QVariant(id), row.value(VeloxFields::strategyCustomMsgID));
        EXPECT_EQ(QVariant(QLatin1String(echo)), row.value(VeloxFields::strategyCustomMsg));
    }
}

TEST_F(StrategyPlatformTest, ARunningStrategySendsHeartbeats)
{
    const QString id = startOne();
    for (int beat = 1; beat <= 2; ++beat) {
        const QVariantMap row = client.nextHeartbeat();
        EXPECT_EQ(VeloxValues::MSEventStrategyCustomMsg, typeOf(row));
        EXPECT_EQ(QVariant(id), row.value(VeloxFields::strategyCustomMsgID));
        const QString start =
            QStringLiteral("{\"heartbeat\":%1,\"strategyID\":\"%2\",\"time\":\"20250303").arg(beat).arg(id);
        const QString text = row.value(VeloxFields::strategyCustomMsg).toString();
        EXPECT_TRUE(text.startsWith(start)) << qPrintable(text);
    }
}
