#include "WindowTest.h"
#include "gateway/PageConnection.h"
#include "traffic/Log.h"

#include <QLineEdit>

#include <gmock/gmock.h>

using namespace sim;

namespace {

using PagesTest = WindowTest;

class LivePagesTest : public WindowTest {
protected:
    LivePagesTest() : WindowTest(kSpeed, QTime(10, 0)) {}

    /// Waits for quotes of this symbol alone: no quote that was under way when the page began comes after them.
    static bool awaitTicksOf(const View &view, const char *symbol, int times)
    {
        return awaitTrue(view, QStringLiteral("ticksOf('%1') >= %2").arg(QLatin1String(symbol)).arg(times));
    }

    static constexpr const char *kTicksOf =
        "<script>const ticksOf = symbol => heard.filter(([name, text]) => name === 'on_tickUpdate' && "
        "JSON.parse(text).symbol === symbol).length;</script>";
};

} // namespace

TEST_F(PagesTest, ACallIsAnsweredInTheSameProcess)
{
    const View view = open();
    invoke(view, kToken);
    ASSERT_TRUE(awaitHeard(view, "Data_getToken_RES"));
    EXPECT_EQ(QStringLiteral("{\"code\":\"0\",\"msg\":\"\",\"resultData\":\"%1\",\"uuid\":\"u1\"}")
                  .arg(scenario.logins[0].token),
              heard(view, "Data_getToken_RES"));
    EXPECT_TRUE(gateway.findChildren<PageConnection *>().isEmpty()); // no page has come over a WebSocket
}

TEST_F(PagesTest, TheBridgeIsThatOfTheTerminalAndStaysWhenThePageLoadsTheScriptForBrowsers)
{
    write("script.html", QByteArray("<script>const first = CallBridge</script><script src=/bridge.js></script>"));
    const View view = open(address("script.html"));
    EXPECT_EQ(QStringLiteral("addEventListener,invokeMethod,removeEventListener,true"),
              evaluate(view, QStringLiteral("[...Object.keys(CallBridge).sort(), first === CallBridge].join()")));
}

TEST_F(PagesTest, CallsOfTheFirstScriptAreAnsweredInOrder)
{
    write("early.html", QByteArray(kRecorder) + "<script>for (let i = 0; i < 50; ++i)"
                                                "CallBridge.invokeMethod('Data_getToken_REQ', i)</script>");
    const View view = open(address("early.html"));
    ASSERT_TRUE(awaitHeard(view, "Data_getToken_RES", 50));
    EXPECT_TRUE(
        evaluate(view, QStringLiteral("heard.every(([, text], i) => JSON.parse(text).uuid === String(i))")).toBool());
}

TEST_F(PagesTest, ArgumentsArriveAsTheyDoOverAWebSocket)
{
    const View view = open();
    invoke(view, "'Data_getToken_REQ', 1e6");
    invoke(view, "'Data_getLoginTrader_REQ', '\\u{1F4C8} \\u0000 \"'");
    ASSERT_TRUE(awaitHeard(view, "Data_getToken_RES") && awaitHeard(view, "Data_getLoginTrader_RES"));
    EXPECT_TRUE(heard(view, "Data_getToken_RES").contains(QStringLiteral("\"uuid\":\"1000000\"")));
    EXPECT_TRUE(
        evaluate(view, QStringLiteral("JSON.parse(heard.find(([name]) => name === 'Data_getLoginTrader_RES')[1])"
                                      ".uuid === '\\u{1F4C8} \\u0000 \"'"))
            .toBool());
}

TEST_F(PagesTest, WhatPassesIsInTheTrafficLog)
{
    using traffic::Entry;
    const View view = open();
    invoke(view, kToken);
    ASSERT_TRUE(awaitHeard(view, "Data_getToken_RES"));
    std::vector<Entry> ofCall;
    for (const Entry &entry : traffic::log().after(0, 1000000)) {
        if (entry.uuid == QStringLiteral("u1"))
            ofCall.push_back(entry);
    }
    const auto kind = [](auto expected) { return testing::Field(&Entry::kind, expected); };
    EXPECT_THAT(ofCall, testing::UnorderedElementsAre(kind(Entry::Call), kind(Entry::Event), kind(Entry::CallDone),
                                                      kind(Entry::EventDelivered)));
    for (const Entry &entry : ofCall) {
        EXPECT_EQ(ofCall.front().page, entry.page);
        EXPECT_EQ(ofCall.front().number, entry.call);
    }
}

TEST_F(PagesTest, ManyTabsGetTheirOwnAnswers)
{
    constexpr int kTabs = 12;
    QVector<View> views;
    for (int i = 0; i < kTabs; ++i)
        views.append(&window->open(address()));
    for (int i = 0; i < kTabs; ++i) {
        ASSERT_TRUE(awaitPage(views[i], address()));
        invoke(views[i], QStringLiteral("'Data_getToken_REQ', 'tab %1'").arg(i).toUtf8());
    }
    for (int i = 0; i < kTabs; ++i) {
        ASSERT_TRUE(awaitHeard(views[i], "Data_getToken_RES"));
        EXPECT_TRUE(heard(views[i], "Data_getToken_RES").contains(QStringLiteral("\"tab %1\"").arg(i)));
        EXPECT_EQ(1, evaluate(views[i], QStringLiteral("heard.length")).toInt());
    }
    while (window->tabs().count() > 0)
        window->closeTab(0);
    EXPECT_TRUE(await([&] { return std::all_of(views.begin(), views.end(), [](const View &view) { return !view; }); }));
    const View again = open();
    invoke(again, kToken);
    EXPECT_TRUE(awaitHeard(again, "Data_getToken_RES"));
}

TEST_F(PagesTest, ATabHasTheTitleOfItsPage)
{
    open();
    const View view = open();
    evaluate(view, QStringLiteral("document.title = 'Orders & executions of the whole trading day'; 0"));
    EXPECT_TRUE(await([&] { return window->tabs().tabText(1) == QStringLiteral("Orders && executions of the who…"); }))
        << qPrintable(window->tabs().tabText(1));
    EXPECT_EQ(QStringLiteral("index.html"), window->tabs().tabText(0));
    EXPECT_TRUE(window->windowTitle().startsWith(QStringLiteral("Orders & executions")));
}

TEST_F(PagesTest, TheAddressLineOpensAPageInTheTabAndANewTabWhereThereIsNone)
{
    auto *const line = window->findChild<QLineEdit *>();
    ASSERT_TRUE(line);
    line->setText(QStringLiteral("localhost:%1").arg(gateway.port()));
    emit line->returnPressed();
    ASSERT_EQ(1, window->tabs().count());
    const View view = qobject_cast<PageView *>(window->tabs().widget(0));
    ASSERT_TRUE(awaitPage(view, address("", "localhost")));
    EXPECT_EQ(address("", "localhost").toString(), line->text());

    write("other.html", kRecorder);
    line->setText(address("other.html").toString());
    emit line->returnPressed();
    ASSERT_TRUE(awaitPage(view, address("other.html")));
    EXPECT_EQ(1, window->tabs().count());
    invoke(view, kToken);
    EXPECT_TRUE(awaitHeard(view, "Data_getToken_RES"));
}

TEST_F(PagesTest, APageThatAPageOpensGetsATabOfItsOwnAndMayCloseIt)
{
    const View first = open();
    evaluate(first, QStringLiteral("window.opened = open('/'); 0"));
    ASSERT_TRUE(await([&] { return window->tabs().count() == 2; }));
    const View second = qobject_cast<PageView *>(window->tabs().widget(1));
    ASSERT_TRUE(awaitPage(second, address()));
    invoke(second, kToken);
    ASSERT_TRUE(awaitHeard(second, "Data_getToken_RES"));
    EXPECT_EQ(0, evaluate(first, QStringLiteral("heard.length")).toInt());

    evaluate(first, QStringLiteral("opened.close(); 0"));
    EXPECT_TRUE(await([&] { return !second; }));
    EXPECT_EQ(1, window->tabs().count());
}

TEST_F(PagesTest, DeveloperToolsCloseWithTheTabOfTheirPage)
{
    const View view = open();
    const QList<QAction *> actions = window->findChildren<QAction *>();
    const auto tools = std::find_if(actions.begin(), actions.end(), [](const QAction *action) {
        return action->text() == QStringLiteral("Developer tools");
    });
    ASSERT_NE(actions.end(), tools);
    (*tools)->trigger();
    ASSERT_EQ(2, window->tabs().count());
    window->closeTab(0);
    EXPECT_TRUE(await([&] { return !view && window->tabs().count() == 0; }));
}

TEST_F(LivePagesTest, QuotesReachThePageThatSubscribed)
{
    const View subscriber = open();
    const View other = open();
    invoke(subscriber, "'Sub_subscribe_REQ', 'u', '609001.SH'");
    ASSERT_TRUE(awaitHeard(subscriber, "on_tickUpdate", 3));
    EXPECT_TRUE(heard(subscriber, "on_tickUpdate").contains(QStringLiteral("\"symbol\":\"609001.SH\"")));
    EXPECT_EQ(0, evaluate(other, QStringLiteral("heard.length")).toInt());
}

TEST_F(LivePagesTest, AReloadKeepsTheViewAndEndsTheSubscriptionsOfThePage)
{
    write("ticks.html", QByteArray(kRecorder) + kTicksOf);
    const View view = open(address("ticks.html"));
    invoke(view, "'Sub_subscribe_REQ', 'u', '609001.SH'");
    ASSERT_TRUE(awaitTicksOf(view, "609001.SH", 1));

    evaluate(view, QStringLiteral("window.isOld = true; 0"));
    view->browser().reload();
    ASSERT_TRUE(awaitTrue(view, QStringLiteral("!window.isOld && document.readyState === 'complete'")));
    ASSERT_TRUE(view);
    invoke(view, "'Sub_subscribe_REQ', 'u', '609801.SH'");
    ASSERT_TRUE(awaitTicksOf(view, "609801.SH", 5));
    EXPECT_EQ(0, evaluate(view, QStringLiteral("ticksOf('609001.SH')")).toInt());
}
