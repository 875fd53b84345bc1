#include "Page.h"
#include "TerminalTest.h"
#include "traffic/Log.h"

#include <atomic>
#include <memory>

using namespace sim;

namespace {

const char kPlaced[] = "Trade_insertOrder_RES";
const char kCandles[] = "Data_getKLineData_RES";
const char kOrderPush[] = "on_entrustUpdate";

constexpr int kLongMs = 600000; // of exchange time

QString code(const QJsonObject &reply)
{
    return reply.value(QStringLiteral("code")).toString();
}

QString orderId(const QJsonObject &reply)
{
    return reply.value(QStringLiteral("resultData")).toObject().value(QStringLiteral("orderID")).toString();
}

/// A page of a terminal after the close, where orders rest, and faults that it sees.
class FaultsTest : public QuietTerminalTest {
protected:
    FaultsTest()
    {
        EXPECT_TRUE(gateway.listen(0));
        page = std::make_unique<Page>(gateway);
        EXPECT_TRUE(page->awaitOpen());
        drain(); // for the first page the library asks for the permissions, which no fault of a test must meet
    }

    void set(Fault fault, int value) { terminal.faults().set({fault, value}); }

    void placeOrder(const QString &uuid = QStringLiteral("u"))
    {
        page->invoke("Trade_insertOrder_REQ", {uuid, QStringLiteral("880010001"), QStringLiteral("609001.SH"),
                                               QStringLiteral("SH"), QStringLiteral("Buy"), QStringLiteral("Limit"),
                                               QStringLiteral("13.00"), QStringLiteral("100"), QString()});
    }

    void askForCandles(const QString &uuid)
    {
        page->invoke("Data_getKLineData_REQ", {uuid, QStringLiteral("609001.SH"), QStringLiteral("20250228"),
                                               QStringLiteral("20250228"), QStringLiteral("2")});
    }

    /// Makes a call that is always answered, and waits for its answer.
    void drain()
    {
        const int before = page->heard("Data_getToken_RES").size();
        page->invoke("Data_getToken_REQ", {QStringLiteral("drain")});
        EXPECT_TRUE(await([&] { return page->heard("Data_getToken_RES").size() > before; }));
    }

    /// The place of the first event of that name; -1 without one.
    int placeOf(const char *event) const
    {
        for (int i = 0; i < page->frames.size(); ++i) {
            if (page->event(i) == QLatin1String(event))
                return i;
        }
        return -1;
    }

    Gateway gateway{QString(), {}};
    std::unique_ptr<Page> page;
};

} // namespace

TEST_F(FaultsTest, ARefusedOrderHasAReasonAndIsKept)
{
    set(Fault::RefuseOrders, 1);
    placeOrder();
    const QJsonObject refused = page->awaitObject(kPlaced);
    EXPECT_EQ(QStringLiteral("-1"), code(refused));
    EXPECT_EQ(QString::fromUtf8("柜台拒绝委托"), refused.value(QStringLiteral("msg")).toString());
    const std::optional<Order> order = terminal.desk().order(orderId(refused));
    ASSERT_TRUE(order);
    EXPECT_EQ(OrderStatus::Rejected, order->status);
    placeOrder();
    EXPECT_EQ(QStringLiteral("0"), code(page->awaitObject(kPlaced, 1)));
}

TEST_F(FaultsTest, AQuietRefusalLooksLikeASuccessWithoutAnOrder)
{
    set(Fault::RefuseOrdersSilently, 1);
    const size_t before = terminal.desk().read()->orders().size();
    placeOrder();
    const QJsonObject refused = page->awaitObject(kPlaced);
    EXPECT_EQ(QStringLiteral("0"), code(refused));
    EXPECT_EQ(QString(), refused.value(QStringLiteral("msg")).toString());
    EXPECT_EQ(QString(), orderId(refused));
    EXPECT_EQ(before, terminal.desk().read()->orders().size());
    placeOrder();
    EXPECT_NE(QString(), orderId(page->awaitObject(kPlaced, 1)));
}

TEST_F(FaultsTest, SilentCandlesNeverCome)
{
    set(Fault::SilentKLines, 1);
    askForCandles(QStringLiteral("silent"));
    drain();
    terminal.skipTo(terminal.now().addSecs(60)); // its time on the bus is over
    terminal.bus()->awaitReturn();
    const QDateTime later = terminal.now().addSecs(60);
    ASSERT_TRUE(await([&] { return terminal.now() > later; }));
    set(Fault::SilentKLines, 0);
    askForCandles(QStringLiteral("loud"));
    EXPECT_EQ(QStringLiteral("loud"), page->awaitObject(kCandles).value(QStringLiteral("uuid")).toString());
    EXPECT_EQ(1, page->heard(kCandles).size());
}

TEST_F(FaultsTest, SlowServersAnswerLater)
{
    set(Fault::SlowAnswers, kLongMs);
    const QDateTime asked = terminal.now();
    askForCandles(QStringLiteral("u"));
    page->awaitObject(kCandles);
    EXPECT_LE(asked.addMSecs(kLongMs), terminal.now());
}

TEST_F(FaultsTest, AnOrderWaitsForASlowServerUntilTheFaultEnds)
{
    EXPECT_EQ(kSpeed, terminal.speed());
    terminal.setSpeed(0.01); // the server would need months
    set(Fault::SlowAnswers, kLongMs);
    std::atomic<bool> hasEnded{false};
    const int listener = traffic::log().listen([&](const traffic::Entry &entry) {
        if (entry.name != QLatin1String("VarnelTradeLogic::orders"))
            return;
        Command clear;
        Command::parse(QStringLiteral("clear"), clear);
        terminal.control().run(clear, [&](const QString &) { hasEnded = true; });
    });
    placeOrder();
    EXPECT_EQ(QStringLiteral("0"), code(page->awaitObject(kPlaced)));
    EXPECT_TRUE(hasEnded);
    traffic::log().leave(listener);
}

TEST_F(FaultsTest, AnOrderIsAnsweredAfterItsPush)
{
    set(Fault::AnswerAfterPush, 1);
    placeOrder();
    const QString id = orderId(page->awaitObject(kPlaced));
    ASSERT_LE(0, placeOf(kOrderPush));
    EXPECT_LT(placeOf(kOrderPush), placeOf(kPlaced));
    EXPECT_TRUE(page->heard(kOrderPush).first().first().toString().contains(id));
}

TEST_F(FaultsTest, LatePushesComeAfterTheAnswer)
{
    set(Fault::LatePushes, kLongMs);
    const QDateTime placed = terminal.now();
    placeOrder();
    ASSERT_TRUE(await([&] { return placeOf(kOrderPush) >= 0; }));
    EXPECT_LE(placed.addMSecs(kLongMs), terminal.now());
    EXPECT_LT(placeOf(kPlaced), placeOf(kOrderPush));
}

TEST_F(FaultsTest, LatePushesKeepTheirOrderWhenTheFaultEnds)
{
    set(Fault::LatePushes, kLongMs);
    placeOrder(QStringLiteral("late"));
    const QString late = orderId(page->awaitObject(kPlaced));
    set(Fault::LatePushes, 0);
    placeOrder(QStringLiteral("soon"));
    const QString soon = orderId(page->awaitObject(kPlaced, 1));
    const auto all = [&] {
        QString text;
        for (const QJsonArray &args : page->heard(kOrderPush))
            text += args.first().toString();
        return text;
    };
    ASSERT_TRUE(await([&] { return all().contains(late) && all().contains(soon); }));
    EXPECT_LT(all().indexOf(late), all().indexOf(soon));
}

TEST_F(FaultsTest, AStrategyPlatformThatIsSilentAnswersNothing)
{
    const auto query = [&](const char *uuid) {
        page->invoke("Vlx_queryStrategyStatus_REQ", {QLatin1String(uuid), QStringLiteral("none"), QString()});
    };
    set(Fault::SilentStrategies, 1);
    query("silent");
    drain();
    const QDateTime later = terminal.now().addSecs(60);
    ASSERT_TRUE(await([&] { return terminal.now() > later; }));
    terminal.bus()->awaitReturn();
    set(Fault::SilentStrategies, 0);
    query("loud");
    EXPECT_EQ(QStringLiteral("loud"),
              page->awaitObject("Vlx_queryStrategyStatus_RES").value(QStringLiteral("uuid")).toString());
    EXPECT_EQ(1, page->heard("Vlx_queryStrategyStatus_RES").size());
}

TEST_F(FaultsTest, AConnectionThatBreaksInACallLosesTheReplyAndNotTheOrder)
{
    drain();
    set(Fault::DropInCall, 1);
    const size_t before = terminal.desk().read()->orders().size();
    placeOrder();
    ASSERT_TRUE(page->awaitClosed());
    EXPECT_EQ(before + 1, terminal.desk().read()->orders().size());
    EXPECT_TRUE(page->heard(kPlaced).isEmpty());
}

using FillInPartsTest = StandingTerminalTest;

TEST_F(FillInPartsTest, APageSeesAnOrderPartlyFilledAndThenWhole)
{
    Gateway gateway{QString(), {}};
    ASSERT_TRUE(gateway.listen(0));
    Page page(gateway);
    ASSERT_TRUE(page.awaitOpen());
    terminal.faults().set({Fault::FillInParts, 1});
    page.invoke("Trade_insertOrder_REQ",
                {QStringLiteral("u"), QStringLiteral("880010001"), QStringLiteral("609801.SH"), QString(),
                 QStringLiteral("Buy"), QStringLiteral("Market"), QString(), QStringLiteral("200"), QString()});
    const QString id = orderId(page.awaitObject(kPlaced));
    const auto awaitState = [&](const char *status) {
        return await([&] {
            for (const QJsonArray &push : page.heard(kOrderPush)) {
                const QString records = push.first().toString();
                if (records.contains(id) && records.contains(QLatin1String(status)))
                    return true;
            }
            return false;
        });
    };
    const auto playUntilFilled = [&](qint64 qty) {
        while (terminal.desk().order(id)->filledQty < qty) {
            terminal.skipTo(terminal.now().addSecs(steps::kSeconds));
            terminal.playMarket(terminal.now());
        }
        terminal.skipTo(terminal.now().addSecs(1)); // for the pushes
    };
    playUntilFilled(1);
    EXPECT_EQ(100, terminal.desk().order(id)->filledQty);
    EXPECT_TRUE(awaitState("\"PartlyFilled\""));
    playUntilFilled(200);
    EXPECT_TRUE(awaitState("\"Filled\""));
    const auto executions = [&] {
        int ofTheOrder = 0;
        for (const QJsonArray &push : page.heard("on_executionUpdate")) {
            for (const QJsonValue execution : QJsonDocument::fromJson(push.first().toString().toUtf8()).array())
                ofTheOrder += execution[QLatin1String("orderId")][QLatin1String("userRole")] == id ? 1 : 0;
        }
        return ofTheOrder;
    };
    EXPECT_TRUE(await([&] { return executions() == 2; })) << executions();
    EXPECT_FALSE(terminal.faults().isOn(Fault::FillInParts));
}

TEST(PermissionFaultTest, APermissionServerThatFailsGivesNoPermissionUntilItAnswers)
{
    Scenario scenario;
    QString error;
    ASSERT_TRUE(Scenario::read(Scenario::defaultFile(), scenario, error));
    scenario.faults = {{Fault::FailPermissions, 1}};
    Terminal terminal(scenario, scenario.logins.first(), 1000);
    Gateway gateway{QString(), {}};
    ASSERT_TRUE(gateway.listen(0));
    Page page(gateway);
    ASSERT_TRUE(page.awaitOpen());
    const auto permission = [&](int number) {
        page.invoke("Data_getPermission_REQ",
                    {QStringLiteral("u"), QStringLiteral("880010001"), QStringLiteral("KFZ;SNB")});
        return page.awaitObject("Data_getPermission_RES", number).value(QStringLiteral("resultData")).toInt();
    };
    EXPECT_EQ(0, permission(0));
    terminal.faults().set({Fault::FailPermissions, 0});
    EXPECT_EQ(1, permission(1));
}
