#include "Page.h"
#include "RawPage.h"
#include "TerminalTest.h"
#include "VarnelCefView.h"
#include "gateway/Outbox.h"
#include "gateway/PageConnection.h"

#include <QApplication>

#include <memory>
#include <vector>

using namespace sim;

namespace {

const char kTick[] = "on_tickUpdate";
const char kReply[] = "Data_getToken_RES";

QCefEvent event(const char *name, const QString &text)
{
    QCefEvent event{QString(QLatin1String(name))};
    event.arguments().append(text);
    return event;
}

/// A tick of that symbol, as long as a real one.
QCefEvent tick(int symbol, int number)
{
    return event(kTick, QStringLiteral("{\"filler\":\"%1\",\"number\":\"%2\",\"symbol\":\"S%3\"}")
                            .arg(QString(350, QLatin1Char('x')))
                            .arg(number)
                            .arg(symbol));
}

/// What a page has received of the numbered events of a test.
struct Received {
    explicit Received(const RawPage &page)
    {
        for (int i = 0; i < page.frames.size(); ++i)
            add(page.event(i));
    }
    explicit Received(const Page &page)
    {
        for (const QJsonObject &frame : page.frames)
            add(frame);
    }

    void add(const QJsonObject &frame)
    {
        const QString text = frame.value(QStringLiteral("args")).toArray().at(0).toString();
        if (frame.value(QStringLiteral("event")) == QLatin1String(kReply)) {
            replies.append(text.toInt());
            return;
        }
        const QJsonObject tick = QJsonDocument::fromJson(text.toUtf8()).object();
        const int number = tick.value(QStringLiteral("number")).toString().toInt();
        const QString symbol = tick.value(QStringLiteral("symbol")).toString();
        EXPECT_LT(newest.value(symbol, -1), number) << qPrintable(symbol);
        newest.insert(symbol, number);
        ++ticks;
    }

    QVector<int> replies;
    QHash<QString, int> newest; ///< the last number of each symbol
    int ticks = 0;
};

class SlowPagesTest : public QuietTerminalTest {
protected:
    SlowPagesTest() { EXPECT_TRUE(gateway.listen(0)); }

    int pages() const { return gateway.findChildren<PageConnection *>().size(); }

    /// Opens a page and returns its view.
    template <typename APage>
    static VarnelCefView *open(std::unique_ptr<APage> &page, const Gateway &gateway)
    {
        const QWidgetList before = QApplication::topLevelWidgets();
        page = std::make_unique<APage>(gateway);
        EXPECT_TRUE(page->awaitOpen());
        EXPECT_TRUE(await([&] { return QApplication::topLevelWidgets().size() == before.size() + 1; }));
        for (QWidget *const widget : QApplication::topLevelWidgets()) {
            if (!before.contains(widget))
                return qobject_cast<VarnelCefView *>(widget);
        }
        return nullptr;
    }

    Gateway gateway{QString(), {}};
};

} // namespace

TEST_F(SlowPagesTest, APageThatDoesNotReadGetsEveryReplyAndTheNewestTicksLater)
{
    constexpr int kEvents = 50000;
    constexpr int kSymbols = 300;
    constexpr int kTicksForAReply = 10;
    std::unique_ptr<RawPage> stalled;
    std::unique_ptr<Page> other;
    VarnelCefView *const stalledView = open(stalled, gateway);
    VarnelCefView *const otherView = open(other, gateway);
    ASSERT_TRUE(stalledView && otherView);
    stalled->stopReading();

    QVector<int> replies;
    QHash<QString, int> newest;
    for (int i = 0; i < kEvents; ++i) {
        const bool isReply = i % kTicksForAReply == 0;
        const QCefEvent event = isReply ? ::event(kReply, QString::number(i)) : tick(i % kSymbols, i);
        stalledView->broadcastEvent(event);
        otherView->broadcastEvent(event);
        if (isReply)
            replies.append(i);
        else
            newest.insert(QStringLiteral("S%1").arg(i % kSymbols), i);
    }
    const QCefEvent last = event(kReply, QString::number(kEvents));
    for (VarnelCefView *const view : {stalledView, otherView})
        view->broadcastEvent(last);
    replies.append(kEvents);

    // The other page has everything while the first one has taken nothing.
    const auto isLast = [&](const QJsonObject &frame) {
        return frame.value(QStringLiteral("args")).toArray().at(0).toString() == QString::number(kEvents);
    };
    ASSERT_TRUE(await([&] { return !other->frames.isEmpty() && isLast(other->frames.last()); }));
    const Received others(*other);
    EXPECT_EQ(replies, others.replies);
    EXPECT_EQ(newest, others.newest);
    EXPECT_TRUE(stalled->frames.isEmpty());

    stalled->readAgain();
    ASSERT_TRUE(
        await([&] { return !stalled->frames.isEmpty() && isLast(stalled->event(stalled->frames.size() - 1)); }));
    const Received late(*stalled);
    EXPECT_EQ(replies, late.replies);
    EXPECT_EQ(newest, late.newest);
    EXPECT_LT(late.ticks, kEvents - replies.size()); // older ones have made room for newer ones
    EXPECT_EQ(2, pages());
}

TEST_F(SlowPagesTest, ALongReplyToAPageThatDoesNotReadDelaysNobody)
{
    constexpr int kCalls = 100;
    RawPage slow(gateway);
    ASSERT_TRUE(slow.awaitOpen());
    Page quick(gateway);
    ASSERT_TRUE(quick.awaitOpen());
    slow.stopReading();
    slow.invoke("Data_getSymbolDetail_REQ", {QStringLiteral("long"), QStringLiteral("?,").repeated(50000)});
    for (int i = 0; i < kCalls; ++i) {
        quick.invoke("Data_getToken_REQ", {QString::number(i)});
        ASSERT_TRUE(quick.awaitFrames(i + 1));
        EXPECT_EQ(QString::number(i), quick.uuid(i));
    }
    EXPECT_TRUE(slow.frames.isEmpty());

    slow.readAgain();
    ASSERT_TRUE(slow.awaitFrames(1));
    constexpr int kTenMegabytes = 10000000;
    EXPECT_LT(kTenMegabytes, slow.frames[0].payload.size());
    const QString reply = slow.event(0).value(QStringLiteral("args")).toArray().at(0).toString();
    EXPECT_EQ(QStringLiteral("long"),
              QJsonDocument::fromJson(reply.toUtf8()).object().value(QStringLiteral("uuid")).toString());
}

TEST_F(SlowPagesTest, APageThatNeverReadsIsDroppedAndOthersAreNot)
{
    std::unique_ptr<RawPage> stalled;
    std::unique_ptr<Page> other;
    VarnelCefView *const view = open(stalled, gateway);
    open(other, gateway);
    ASSERT_TRUE(view);
    stalled->stopReading();
    const QCefEvent megabyte = event(kReply, QString(1000000, QLatin1Char('x')));
    constexpr qint64 kSystemBuffers = qint64{16} * 1024 * 1024;
    for (qint64 sent = 0; sent <= Outbox::kMaxBytes + kSystemBuffers; sent += 1000000)
        view->broadcastEvent(megabyte);
    EXPECT_TRUE(await([&] { return pages() == 1; }));
    other->invoke("Data_getToken_REQ", {QStringLiteral("mine")});
    EXPECT_TRUE(other->awaitFrames(1));
}

TEST_F(SlowPagesTest, TwoHundredPagesGetTheirAnswersAndEachPush)
{
    constexpr int kPages = 200;
    constexpr int kOrdersLoaded = 0x30001;
    std::vector<std::unique_ptr<Page>> all;
    all.reserve(kPages);
    for (int i = 0; i < kPages; ++i)
        all.push_back(std::make_unique<Page>(gateway));
    ASSERT_TRUE(await([&] { return pages() == kPages; }));
    terminal.bus()->announce(kOrdersLoaded, {});
    for (int i = 0; i < kPages; ++i) {
        ASSERT_TRUE(all[size_t(i)]->awaitOpen());
        all[size_t(i)]->invoke("Data_getToken_REQ", {QString::number(i)});
    }
    for (int i = 0; i < kPages; ++i) {
        Page &page = *all[size_t(i)];
        EXPECT_EQ(QString::number(i), page.awaitObject("Data_getToken_RES").value(QStringLiteral("uuid")).toString());
        EXPECT_TRUE(await([&] { return page.heard("on_orderLoaded").size() == 1; }));
        EXPECT_EQ(2, page.frames.size());
    }
    all.clear();
    EXPECT_TRUE(await([&] { return pages() == 0; }));
}

TEST_F(SlowPagesTest, TwoHundredPagesThatDoNotReadDelayNobodyAndKeepOnlyTheNewestTicks)
{
    constexpr int kPages = 200;
    constexpr int kSymbols = 20;
    constexpr int kTicks = 2000;
    std::vector<std::unique_ptr<RawPage>> stalled(kPages);
    std::vector<VarnelCefView *> views;
    for (std::unique_ptr<RawPage> &page : stalled) {
        views.push_back(open(page, gateway));
        ASSERT_TRUE(views.back());
        page->stopReading();
    }
    // Far more than the system's buffers hold, so that what follows waits in the simulator.
    const QCefEvent megabytes = event(kReply, QString(8000000, QLatin1Char('x')));
    views.front()->broadcastEvent(megabytes);
    for (int i = 0; i < kTicks; ++i) {
        const QCefEvent each = tick(i % kSymbols, i);
        for (VarnelCefView *const view : views)
            view->broadcastEvent(each);
    }
    Page other(gateway);
    ASSERT_TRUE(other.awaitOpen());
    for (int i = 0; i < 20; ++i) {
        other.invoke("Data_getToken_REQ", {QString::number(i)});
        ASSERT_TRUE(other.awaitFrames(i + 1));
        EXPECT_EQ(QString::number(i), other.uuid(i));
    }
    EXPECT_EQ(kPages + 1, pages());

    stalled.front()->readAgain();
    ASSERT_TRUE(stalled.front()->awaitFrames(1 + kSymbols));
    stalled.front()->invoke("Data_getToken_REQ", {QStringLiteral("last")});
    const auto isLast = [&] {
        const QJsonObject last = stalled.front()->event(stalled.front()->frames.size() - 1);
        return last.value(QStringLiteral("args")).toArray().at(0).toString().contains(QLatin1String("\"last\""));
    };
    ASSERT_TRUE(await(isLast));
    const Received received(*stalled.front());
    EXPECT_EQ(kSymbols, received.ticks);
    for (int symbol = 0; symbol < kSymbols; ++symbol)
        EXPECT_EQ(kTicks - kSymbols + symbol, received.newest.value(QStringLiteral("S%1").arg(symbol)));
}

TEST_F(SlowPagesTest, CallsThatAreReadBeforeTheEndOfTheConnectionAreMade)
{
    // Far more than may wait for the user-interface thread at once.
    constexpr int kCalls = 500;
    const QString key = QStringLiteral("slow/last");
    const QString filler(20000, QLatin1Char('x'));
    RawPage page(gateway);
    ASSERT_TRUE(page.awaitOpen());
    for (int i = 1; i <= kCalls; ++i)
        page.invoke("Data_saveSetting_REQ", {filler, key, QString::number(i)});
    page.socket.write(RawPage::frame(RawPage::Close | RawPage::kLast, {}));
    ASSERT_TRUE(page.awaitDisconnected());
    ASSERT_TRUE(await([&] { return pages() == 0; }));
    Page other(gateway);
    ASSERT_TRUE(other.awaitOpen());
    other.invoke("Data_getSetting_REQ", {QStringLiteral("u"), key});
    EXPECT_EQ(QString::number(kCalls),
              other.awaitObject("Data_getSetting_RES").value(QStringLiteral("resultData")).toString());
}

TEST_F(SlowPagesTest, TheGatewayEndsWithPagesThatDoNotRead)
{
    auto second = std::make_unique<Gateway>(QString(), QStringList());
    ASSERT_TRUE(second->listen(0));
    std::unique_ptr<RawPage> stalled;
    std::unique_ptr<Page> other;
    VarnelCefView *const view = open(stalled, *second);
    open(other, *second);
    ASSERT_TRUE(view);
    QTcpSocket silent;
    silent.connectToHost(QHostAddress::LocalHost, second->port());
    ASSERT_TRUE(await([&] { return silent.state() == QAbstractSocket::ConnectedState; }));
    stalled->stopReading();
    view->broadcastEvent(event(kReply, QString(20000000, QLatin1Char('x')))); // more than sockets hold
    other->invoke("Data_getToken_REQ", {QStringLiteral("u")});
    ASSERT_TRUE(other->awaitFrames(1));
    second.reset();
    ASSERT_TRUE(other->awaitClosed());
    EXPECT_EQ(QWebSocketProtocol::CloseCodeGoingAway, other->socket.closeCode());
    EXPECT_TRUE(await([&] { return silent.state() == QAbstractSocket::UnconnectedState; }));
    stalled->readAgain();
    EXPECT_TRUE(stalled->awaitDisconnected());
}
