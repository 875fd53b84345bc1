#include "RawPage.h"
#include "TerminalTest.h"
#include "gateway/TrafficFrame.h"
#include "traffic/Log.h"

#include <QWebSocket>

using namespace sim;
using traffic::Entry;

namespace {

class TrafficSessionTest : public QuietTerminalTest {
protected:
    TrafficSessionTest() { EXPECT_TRUE(gateway.listen(0)); }

    Gateway gateway{QString(), {QStringLiteral("http://allowed.example")}};
};

/// A WebSocket client that collects what the gateway tells of the traffic.
class Inspector {
public:
    Inspector(const Gateway &gateway, const QString &origin) : socket(origin)
    {
        QObject::connect(&socket, &QWebSocket::textMessageReceived, [this](const QString &frame) {
            const QJsonArray entries = QJsonDocument::fromJson(frame.toUtf8()).array();
            for (const QJsonValue &entry : entries)
                heard.append(entry.toObject());
        });
        socket.open(QUrl(QStringLiteral("ws://127.0.0.1:%1/traffic").arg(gateway.port())));
    }

    bool awaitName(const QString &name)
    {
        return await([&] { return !named(name).isEmpty(); });
    }

    QJsonObject named(const QString &name) const
    {
        for (const QJsonObject &entry : heard) {
            if (entry.value(QStringLiteral("name")) == name)
                return entry;
        }
        return {};
    }

    QWebSocket socket;
    QVector<QJsonObject> heard;
};

void addQuote(const QString &name)
{
    Entry entry;
    entry.kind = Entry::Quote;
    entry.name = name;
    traffic::log().add(entry);
}

Entry withArgument(const QVariant &argument)
{
    Entry entry;
    entry.args = {argument};
    return entry;
}

QJsonObject objectOf(const Entry &entry)
{
    return QJsonDocument::fromJson(trafficText(entry).toUtf8()).object();
}

} // namespace

TEST(TrafficFrame, AnEntryNamesOnlyWhatItHas)
{
    Entry entry;
    entry.kind = Entry::Event;
    entry.number = 7;
    entry.page = 2;
    entry.name = QStringLiteral("Data_getToken_RES");
    entry.uuid = QStringLiteral("u1");
    entry.isReply = true;
    entry.args = {QStringLiteral("text"), 5, QVariantMap{{QStringLiteral("key"), QStringLiteral("value")}}};
    EXPECT_EQ(QStringLiteral(R"({"kind":"event","number":7,"page":2,"name":"Data_getToken_RES","uuid":"u1",)"
                             R"("isReply":true,"args":["text",5,{"key":"value"}]})"),
              trafficText(entry));
    EXPECT_EQ(QStringLiteral(R"({"kind":"call"})"), trafficText(Entry()));
}

TEST(TrafficFrame, LongTextsAndListsAreCut)
{
    const QString text(20000, QLatin1Char('x'));
    QVariantList list;
    for (int i = 0; i < 200; ++i)
        list.append(i);
    const QJsonObject longText = objectOf(withArgument(text));
    EXPECT_EQ(text.left(16 * 1024), longText.value(QStringLiteral("args")).toArray().at(0).toString());
    EXPECT_TRUE(longText.value(QStringLiteral("cut")).toBool());
    const QJsonObject inMap = objectOf(withArgument(QVariantMap{{QStringLiteral("key"), text}}));
    EXPECT_TRUE(inMap.value(QStringLiteral("cut")).toBool());
    const QJsonObject longList = objectOf(withArgument(list));
    EXPECT_EQ(100, longList.value(QStringLiteral("args")).toArray().at(0).toArray().size());
    EXPECT_TRUE(longList.value(QStringLiteral("cut")).toBool());
}

TEST(TrafficFrame, SaysFirstWhatIsLost)
{
    EXPECT_EQ("[]", trafficFrame(0, {}));
    EXPECT_EQ(R"([{"kind":"call"},{"kind":"call"}])", trafficFrame(0, {Entry(), Entry()}));
    EXPECT_EQ(R"([{"kind":"lost","count":3},{"kind":"call"}])", trafficFrame(3, {Entry()}));
}

TEST_F(TrafficSessionTest, AnInspectorGetsTheKeptEntriesThenTheNewOnes)
{
    addQuote(QStringLiteral("before"));
    Inspector inspector(gateway, QStringLiteral("http://allowed.example"));
    ASSERT_TRUE(inspector.awaitName(QStringLiteral("before")));
    addQuote(QStringLiteral("after"));
    ASSERT_TRUE(inspector.awaitName(QStringLiteral("after")));
    qint64 last = 0;
    for (const QJsonObject &entry : qAsConst(inspector.heard)) {
        const qint64 number = entry.value(QStringLiteral("number")).toInt();
        EXPECT_EQ(last + 1, number); // the frames to inspectors are not entries
        last = number;
    }
}

TEST_F(TrafficSessionTest, OnlyAllowedOriginsSeeTheTraffic)
{
    Inspector own(gateway, QStringLiteral("http://127.0.0.1:%1").arg(gateway.port()));
    Inspector foreign(gateway, QStringLiteral("http://foreign.example"));
    EXPECT_TRUE(await([&] { return own.socket.state() == QAbstractSocket::ConnectedState; }));
    EXPECT_TRUE(await([&] { return foreign.socket.state() == QAbstractSocket::UnconnectedState; }));
    EXPECT_TRUE(foreign.socket.errorString().contains(QStringLiteral("403")))
        << qPrintable(foreign.socket.errorString());
}

TEST_F(TrafficSessionTest, AnInspectorThatDoesNotReadLosesEntriesAndIsToldHowMany)
{
    RawPage inspector(gateway, "/traffic");
    ASSERT_TRUE(inspector.awaitOpen());
    inspector.stopReading();
    // More than the system's buffers and the log keep.
    constexpr int kEntries = 30000;
    for (int i = 0; i < kEntries; ++i)
        addQuote(QString(1000, QLatin1Char('x')));
    addQuote(QStringLiteral("last"));
    inspector.readAgain();
    qint64 lost = 0;
    qint64 received = 0;
    qint64 last = 0;
    ASSERT_TRUE(await([&] {
        for (; !inspector.frames.isEmpty(); inspector.frames.removeFirst()) {
            const QJsonArray entries = QJsonDocument::fromJson(inspector.frames.first().payload).array();
            for (const QJsonValue &entry : entries) {
                if (entry.toObject().value(QStringLiteral("kind")) == QLatin1String("lost")) {
                    lost += entry.toObject().value(QStringLiteral("count")).toInt();
                    continue;
                }
                ++received;
                last = entry.toObject().value(QStringLiteral("number")).toInt();
                EXPECT_EQ(last, received + lost);
            }
        }
        return last >= qint64(traffic::log().oldest()) && traffic::log().after(quint64(last), 1).empty();
    }));
    EXPECT_LT(0, lost);
    EXPECT_LT(kEntries, received + lost);
}

TEST_F(TrafficSessionTest, TheEndOfTheGatewayClosesInspectors)
{
    auto second = std::make_unique<Gateway>(QString(), QStringList());
    ASSERT_TRUE(second->listen(0));
    Inspector inspector(*second, QStringLiteral("http://127.0.0.1:%1").arg(second->port()));
    ASSERT_TRUE(await([&] { return inspector.socket.state() == QAbstractSocket::ConnectedState; }));
    second.reset();
    ASSERT_TRUE(await([&] { return inspector.socket.state() == QAbstractSocket::UnconnectedState; }));
    EXPECT_EQ(QWebSocketProtocol::CloseCodeGoingAway, inspector.socket.closeCode());
}
