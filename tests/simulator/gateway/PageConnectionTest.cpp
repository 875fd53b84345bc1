#include "gateway/PageConnection.h"
#include "CommonQuotaHandler.h"
#include "Page.h"
#include "TerminalTest.h"
#include "gateway/Outbox.h"

#include <QHostAddress>
#include <QTcpSocket>

#include <gmock/gmock.h>

using namespace sim;

namespace {

class PageConnectionTest : public QuietTerminalTest {
protected:
    PageConnectionTest() { EXPECT_TRUE(gateway.listen(0)); }

    QList<PageConnection *> pages() const { return gateway.findChildren<PageConnection *>(); }

    Gateway gateway{QString(), {QStringLiteral("http://allowed.example")}};
};

/// Where the events of a page would go.
class EventList : public PageSocket {
public:
    int number() const override { return 1; }
    void send(const QCefEvent &event, const traffic::Entry &) override // on the test's thread here
    {
        names.append(event.eventName());
    }
    void close(int, const QString &) override { isClosed = true; }
    void handled(const CallFrame &) override {}

    QStringList names;
    bool isClosed = false;
};

} // namespace

TEST_F(PageConnectionTest, ACallIsAnsweredByItsReplyEvent)
{
    Page page(gateway);
    ASSERT_TRUE(page.awaitOpen());
    page.invoke("Data_getToken_REQ", {QStringLiteral("u1")});
    ASSERT_TRUE(page.awaitFrames(1));
    EXPECT_EQ(QStringLiteral("Data_getToken_RES"), page.event(0));
    EXPECT_EQ(QJsonArray{QStringLiteral("{\"code\":\"0\",\"msg\":\"\",\"resultData\":\"%1\",\"uuid\":\"u1\"}")
                             .arg(scenario.logins[0].token)},
              page.args(0));
}

TEST_F(PageConnectionTest, UnknownNamesAreNotAnswered)
{
    Page page(gateway);
    ASSERT_TRUE(page.awaitOpen());
    for (const char *method : {"Data_getBuffer_REQ", "Data_nothing", "Trade_nothing", "Sub_nothing", "UnSub_nothing",
                               "Sub_subscribe", "Vlx_nothing", "Vlx_startStrategy_REQ ", "Sub_signalParseEventMsg",
                               "deleteLater", "", " Data_getToken_REQ", "data_getToken_REQ"})
        page.invoke(method, {QStringLiteral("u")});
    page.invoke("Data_getToken_REQ", {QStringLiteral("sentinel")});
    ASSERT_TRUE(page.awaitFrames(1));
    EXPECT_EQ(QStringLiteral("sentinel"), page.uuid(0));
    EXPECT_EQ(1, page.frames.size());
}

TEST_F(PageConnectionTest, ManyPagesGetTheirOwnAnswers)
{
    constexpr int kPages = 50;
    std::vector<std::unique_ptr<Page>> all;
    all.reserve(kPages);
    for (int i = 0; i < kPages; ++i)
        all.push_back(std::make_unique<Page>(gateway));
    for (int i = 0; i < kPages; ++i) {
        ASSERT_TRUE(all[size_t(i)]->awaitOpen());
        const QString uuid = QString::number(i);
        all[size_t(i)]->invoke("Data_getKLineData_REQ", {uuid, QStringLiteral("609801.SH"), QStringLiteral("20250220"),
                                                         QString(), QStringLiteral("2")});
        all[size_t(i)]->invoke("Data_getLoginTrader_REQ", {uuid});
    }
    for (int i = 0; i < kPages; ++i) {
        Page &page = *all[size_t(i)];
        ASSERT_TRUE(page.awaitFrames(2));
        EXPECT_EQ(2, page.frames.size());
        // On a busy machine the second call may come later than the candles.
        EXPECT_THAT(QStringList({page.event(0), page.event(1)}),
                    testing::UnorderedElementsAre(QStringLiteral("Data_getLoginTrader_RES"),
                                                  QStringLiteral("Data_getKLineData_RES")));
        EXPECT_EQ(QString::number(i), page.uuid(0));
        EXPECT_EQ(QString::number(i), page.uuid(1));
    }
    EXPECT_EQ(kPages, pages().size());
    all.clear();
    EXPECT_TRUE(await([&] { return pages().isEmpty(); }));
}

TEST_F(PageConnectionTest, PagesThatDisconnectDuringACallDoNotAffectOthers)
{
    Page other(gateway);
    ASSERT_TRUE(other.awaitOpen());
    for (int i = 0; i < 30; ++i) {
        Page page(gateway);
        ASSERT_TRUE(page.awaitOpen());
        page.invoke("Data_getKLineData_REQ", {QStringLiteral("u"), QStringLiteral("609801.SH"),
                                              QStringLiteral("20250228"), QString(), QStringLiteral("1")});
        page.invoke("Data_getToken_REQ", {QStringLiteral("u")});
        page.socket.flush();
        page.socket.abort();
    }
    other.invoke("Data_getToken_REQ", {QStringLiteral("mine")});
    ASSERT_TRUE(other.awaitFrames(1));
    EXPECT_EQ(QStringLiteral("mine"), other.uuid(0));
    EXPECT_TRUE(await([&] { return pages().size() == 1; }));
    EXPECT_EQ(1, other.frames.size());
}

TEST_F(PageConnectionTest, APageMayDisconnectWhileTheUserIsAskedAboutItsOrder)
{
    Page other(gateway);
    ASSERT_TRUE(other.awaitOpen());
    Page page(gateway);
    ASSERT_TRUE(page.awaitOpen());
    bool isOver = false;
    terminal.askBeforeOrders([&](const std::vector<Order> &) {
        page.socket.abort();
        EXPECT_TRUE(await([&] { return pages().size() == 1; })); // gone, although its call has not returned
        isOver = true;
        return true;
    });
    page.invoke("Trade_insertOrder_REQ", {QStringLiteral("u"), QStringLiteral("880010001"), QStringLiteral("609001.SH"),
                                          QStringLiteral("SH"), QStringLiteral("Buy"), QStringLiteral("Limit"),
                                          QStringLiteral("13.00"), QStringLiteral("100"), QStringLiteral("mine")});
    ASSERT_TRUE(await([&] { return isOver; }));
    other.invoke("Data_getToken_REQ", {QStringLiteral("mine")});
    EXPECT_FALSE(other.awaitObject("Data_getToken_RES").isEmpty());
    EXPECT_TRUE(page.heard("Trade_insertOrder_RES").isEmpty());
}

TEST_F(PageConnectionTest, AViewOutlivesTheConnectionOfItsPageAndKeepsNothingOfIt)
{
    VarnelCefView view;
    const auto first = std::make_shared<EventList>();
    const auto second = std::make_shared<EventList>();
    const auto subscription = CallFrame::read(R"({"invoke":"Sub_subscribe_REQ","args":["u","609801.SH"]})");
    const auto token = CallFrame::read(R"({"invoke":"Data_getToken_REQ","args":["u"]})");
    {
        PageConnection connection(first, nullptr, &view);
        connection.receive(subscription);
    }
    EXPECT_TRUE(first->isClosed);
    PageConnection connection(second, nullptr, &view);
    emit CommonQuotaHandler::instance()->sigTickDataUpdate(QStringLiteral("609801.SH"), {});
    connection.receive(token);
    EXPECT_EQ(QStringList{QStringLiteral("Sub_subscribe_RES")}, first->names);
    EXPECT_EQ(QStringList{QStringLiteral("Data_getToken_RES")}, second->names);

    connection.receive(subscription);
    emit CommonQuotaHandler::instance()->sigTickDataUpdate(QStringLiteral("609801.SH"), {});
    EXPECT_EQ(QStringLiteral("on_tickUpdate"), second->names.last());
    EXPECT_EQ(1, first->names.size());
}

TEST_F(PageConnectionTest, AnInvalidFrameClosesOnlyItsOwnPage)
{
    Page other(gateway);
    ASSERT_TRUE(other.awaitOpen());
    const struct {
        const char *frame;
        const char *reason;
    } table[] = {
        {"no json", "bad frame: not JSON"},
        {"", "bad frame: not JSON"},
        {"5", "bad frame: not JSON"},
        {"[]", "bad frame: not a JSON object"},
        {"{}", "bad frame: \"invoke\" is not a text"},
        {"{\"invoke\":1,\"args\":[]}", "bad frame: \"invoke\" is not a text"},
        {"{\"invoke\":\"Data_getToken_REQ\"}", "bad frame: \"args\" is not an array"},
        {"{\"invoke\":\"Data_getToken_REQ\",\"args\":{}}", "bad frame: \"args\" is not an array"},
    };
    for (const auto &row : table) {
        Page page(gateway);
        ASSERT_TRUE(page.awaitOpen());
        page.socket.sendTextMessage(QLatin1String(row.frame));
        page.invoke("Data_getToken_REQ", {QStringLiteral("too late")});
        ASSERT_TRUE(page.awaitClosed()) << row.frame;
        EXPECT_EQ(QWebSocketProtocol::CloseCodeWrongDatatype, page.socket.closeCode()) << row.frame;
        EXPECT_EQ(QLatin1String(row.reason), page.socket.closeReason());
        EXPECT_TRUE(page.frames.isEmpty());
    }
    Page binary(gateway);
    ASSERT_TRUE(binary.awaitOpen());
    binary.socket.sendBinaryMessage("{}");
    ASSERT_TRUE(binary.awaitClosed());
    EXPECT_EQ(QWebSocketProtocol::CloseCodeWrongDatatype, binary.socket.closeCode());

    other.invoke("Data_getToken_REQ", {QStringLiteral("mine")});
    EXPECT_TRUE(other.awaitFrames(1));
}

TEST_F(PageConnectionTest, ATooLongFrameIsRefusedWhileItIsBeingSent)
{
    for (const int size : {CallFrame::kMaxSize + 1, 16 * CallFrame::kMaxSize}) {
        Page page(gateway);
        ASSERT_TRUE(page.awaitOpen());
        page.socket.sendTextMessage(QString(size, QLatin1Char('x')));
        ASSERT_TRUE(page.awaitClosed());
        EXPECT_EQ(QWebSocketProtocol::CloseCodeTooMuchData, page.socket.closeCode()) << size;
    }
}

TEST_F(PageConnectionTest, OnlyAllowedOriginsConnect)
{
    Page allowed(gateway, QStringLiteral("http://allowed.example"));
    Page localhost(gateway, QStringLiteral("http://localhost:%1").arg(gateway.port()));
    Page foreign(gateway, QStringLiteral("http://foreign.example"));
    EXPECT_TRUE(allowed.awaitOpen());
    EXPECT_TRUE(localhost.awaitOpen());
    EXPECT_TRUE(foreign.awaitClosed());
    EXPECT_TRUE(await([&] { return pages().size() == 2; }));
}

TEST_F(PageConnectionTest, APageThatStopsReadingIsDisconnected)
{
    Page good(gateway);
    ASSERT_TRUE(good.awaitOpen());

    // Makes the handshake by hand, because this client must not read.
    QTcpSocket stalled;
    stalled.setReadBufferSize(1);
    stalled.connectToHost(QHostAddress::LocalHost, gateway.port());
    stalled.write("GET /view HTTP/1.1\r\nHost: allowed.example\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
                  "Sec-WebSocket-Version: 13\r\nSec-WebSocket-Key: AAAAAAAAAAAAAAAAAAAAAA==\r\n"
                  "Origin: http://allowed.example\r\n\r\n");
    ASSERT_TRUE(await([&] { return pages().size() == 2; }));
    // Each answer contains the long uuid of its call.
    const QByteArray uuid(CallFrame::kMaxSize - 100, 'u');
    const QByteArray call = "{\"invoke\":\"Data_getToken_REQ\",\"args\":[\"" + uuid + "\"]}";
    QByteArray frame("\x81\xff", 2); // a masked text with a length of eight bytes
    for (int shift = 56; shift >= 0; shift -= 8)
        frame += char(qint64(call.size()) >> shift);
    frame += QByteArray(4, '\0'); // the mask
    frame += call;
    constexpr qint64 kSystemBuffers = qint64{8} * 1024 * 1024;
    const qint64 needed = (Outbox::kMaxBytes + kSystemBuffers) / uuid.size() + 1;
    for (qint64 i = 0; i < needed; ++i)
        stalled.write(frame);
    EXPECT_TRUE(await([&] { return pages().size() == 1; }));

    good.invoke("Data_getToken_REQ", {QStringLiteral("mine")});
    EXPECT_TRUE(good.awaitFrames(1));
}

TEST_F(PageConnectionTest, APageThatReadsGetsAnAnswerOfAnySize)
{
    Page page(gateway);
    ASSERT_TRUE(page.awaitOpen());
    const QString symbols = QStringLiteral("?,").repeated(80000);
    page.invoke("Data_getSymbolDetail_REQ", {QStringLiteral("long"), symbols});
    ASSERT_TRUE(await([&] { return page.frames.size() == 1 || !page.socket.isValid(); }));
    ASSERT_TRUE(page.socket.isValid());
    EXPECT_LT(Outbox::kMaxBytes, page.args(0).at(0).toString().size());
    EXPECT_EQ(QStringLiteral("long"), page.uuid(0));
}

TEST_F(PageConnectionTest, DestroyingTheGatewayClosesEveryPage)
{
    auto second = std::make_unique<Gateway>(QString(), QStringList());
    ASSERT_TRUE(second->listen(0));
    Page page(*second);
    ASSERT_TRUE(page.awaitOpen());
    second.reset();
    ASSERT_TRUE(page.awaitClosed());
    EXPECT_EQ(QWebSocketProtocol::CloseCodeGoingAway, page.socket.closeCode());
}
