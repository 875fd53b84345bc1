#include "Controller.h"
#include "Page.h"
#include "TerminalTest.h"
#include "gateway/Gateway.h"

using namespace sim;

namespace {

class ControlSessionTest : public QuietTerminalTest {
protected:
    ControlSessionTest() { EXPECT_TRUE(gateway.listen(0)); }

    Gateway gateway{QString(), {}};
};

} // namespace

TEST_F(ControlSessionTest, TellsTheStateAndEachChangeOfIt)
{
    Controller controller(gateway.port());
    EXPECT_FALSE(controller.state.value(QStringLiteral("isPaused")).toBool());
    EXPECT_EQ(kSpeed, controller.state.value(QStringLiteral("speed")).toDouble());
    EXPECT_EQ(Faults::kCount, controller.state.value(QStringLiteral("faults")).toArray().size());
    terminal.faults().set({Fault::RefuseOrders, 4}); // whoever did it
    EXPECT_TRUE(await([&] { return controller.value("refuse-orders") == 4; }));
    const double time = controller.state.value(QStringLiteral("time")).toDouble();
    EXPECT_TRUE(await([&] { return controller.state.value(QStringLiteral("time")).toDouble() > time; }));
}

TEST_F(ControlSessionTest, TheStateAfterACommandComesBeforeItsResult)
{
    Controller controller(gateway.port());
    EXPECT_EQ(QString(), controller.run(QStringLiteral("pause")));
    EXPECT_TRUE(controller.state.value(QStringLiteral("isPaused")).toBool());
    EXPECT_EQ(QString(), controller.run(QStringLiteral("fault silent-klines")));
    EXPECT_EQ(1, controller.value("silent-klines"));
    EXPECT_TRUE(terminal.faults().isOn(Fault::SilentKLines));
}

TEST_F(ControlSessionTest, MistakesAreExplained)
{
    Controller controller(gateway.port());
    EXPECT_EQ(QStringLiteral("speed needs a number from 0.01 to 1000"), controller.run(QStringLiteral("speed fast")));
    EXPECT_EQ(QStringLiteral("2025-03-02 09:30:00 has passed: it is "),
              controller.run(QStringLiteral("jump 2025-03-02 09:30:00")).left(38));
    controller.socket.sendTextMessage(QStringLiteral("no JSON"));
    EXPECT_TRUE(await([&] { return controller.results.size() == 3; }));
    EXPECT_EQ(QStringLiteral("a command is a JSON object with a text \"command\""),
              controller.results.last().value(QStringLiteral("problem")).toString());
}

TEST_F(ControlSessionTest, ForeignPagesAreRefused)
{
    Controller foreign(gateway.port(), QStringLiteral("http://evil.example"));
    EXPECT_TRUE(await([&] { return foreign.socket.state() == QAbstractSocket::UnconnectedState; }));
    EXPECT_TRUE(foreign.state.isEmpty());
}

TEST_F(ControlSessionTest, DropBreaksThePagesAndNotTheControl)
{
    Page first(gateway);
    ASSERT_TRUE(first.awaitOpen());
    first.invoke("Data_getToken_REQ", {QStringLiteral("u")});
    ASSERT_TRUE(first.awaitFrames(1)); // so that the numbers are known
    Page second(gateway);
    ASSERT_TRUE(second.awaitOpen());
    Controller controller(gateway.port());
    EXPECT_EQ(QString(), controller.run(QStringLiteral("drop 1")));
    EXPECT_TRUE(first.awaitClosed());
    second.invoke("Data_getToken_REQ", {QStringLiteral("u")});
    EXPECT_TRUE(second.awaitFrames(1));
    EXPECT_EQ(QString(), controller.run(QStringLiteral("drop")));
    EXPECT_TRUE(second.awaitClosed());
    EXPECT_EQ(QString(), controller.run(QStringLiteral("clear")));
}
