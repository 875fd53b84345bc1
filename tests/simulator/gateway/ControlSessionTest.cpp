#include "Controller.h"
#include "Page.h"
#include "RawPage.h"
#include "TerminalTest.h"
#include "gateway/Gateway.h"

#include <algorithm>

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

TEST_F(ControlSessionTest, AFrameThatIsTooLongClosesItsPeerAndNoOther)
{
    Controller other(gateway.port());
    const auto longCommand = [](int size) {
        return RawPage::frame(RawPage::Text | RawPage::kLast, QByteArray("{}").leftJustified(size));
    };
    RawPage controller(gateway, "/control");
    ASSERT_TRUE(controller.awaitOpen());
    constexpr int kMost = 4096;
    controller.socket.write(longCommand(kMost));
    EXPECT_TRUE(await([&] {
        return std::any_of(controller.frames.begin(), controller.frames.end(),
                           [](const RawPage::Frame &frame) { return frame.payload.contains("result"); });
    }));
    controller.socket.write(longCommand(kMost + 1));
    EXPECT_TRUE(controller.awaitDisconnected());
    constexpr int kTooLong = 1009;
    EXPECT_EQ(kTooLong, controller.closeCode());
    EXPECT_EQ(QString(), other.run(QStringLiteral("pause")));
}

TEST_F(ControlSessionTest, APeerThatDoesNotReadIsNotReadEither)
{
    constexpr int kCommands = 10000; // far more than the system's buffers hold
    const QByteArray filler(3500, 'x');
    RawPage controller(gateway, "/control");
    ASSERT_TRUE(controller.awaitOpen());
    controller.stopReading();
    for (int i = 0; i < kCommands; ++i)
        controller.socket.write(
            RawPage::frame(RawPage::Text | RawPage::kLast, "{\"id\":\"" + QByteArray::number(i) + filler + "\"}"));
    // Commands wait at the peer, and other pages are served.
    Page page(gateway);
    ASSERT_TRUE(page.awaitOpen());
    constexpr int kCalls = 100;
    qint64 before = 0;
    int calls = 0;
    do {
        before = controller.socket.bytesToWrite();
        for (int i = 0; i < kCalls; ++i) {
            page.invoke("Data_getToken_REQ", {QString::number(i)});
            ASSERT_TRUE(page.awaitFrames(++calls));
        }
    } while (controller.socket.bytesToWrite() != before);
    EXPECT_LT(0, before);

    controller.readAgain();
    int results = 0;
    for (int taken = 0; results < kCommands; ++taken) {
        ASSERT_TRUE(controller.awaitFrames(taken + 1));
        const QJsonObject object = controller.event(taken);
        if (object.value(QStringLiteral("kind")) == QLatin1String("state"))
            continue;
        const QString id = object.value(QStringLiteral("id")).toString();
        EXPECT_EQ(QString::number(results), id.left(id.indexOf(QLatin1Char('x'))));
        ++results;
    }
}
