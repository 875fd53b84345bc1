#include "OrderEntry.h"
#include "TerminalTest.h"

using namespace sim;

class MomentTest : public StandingTerminalTest {};

TEST_F(MomentTest, TheMarketHasBeenPlayedUpToItHoweverLateTheQuotesAre)
{
    const entry::Outcome placed = entry::place(
        QStringLiteral("A880010001"), {entry::line(QStringLiteral("609801.SH"), "Buy", 100, QString(), "Market")});
    ASSERT_EQ(0, placed.result) << qPrintable(placed.errors.join(QLatin1Char(' ')));
    for (int i = 1; i <= 50; ++i) {
        terminal.skipTo(scenario.start.addSecs(qint64{60} * i));
        const Terminal::Moment moment(terminal);
        const auto books = terminal.desk().read();
        EXPECT_EQ(OrderStatus::Filled, books->orders()[size_t(books->orderNumber(placed.id()))].status);
    }
}

TEST_F(MomentTest, TimeStandsStillInIt)
{
    const Terminal::Moment moment(terminal);
    const QDateTime time = terminal.now();
    terminal.skipTo(time.addSecs(60));
    EXPECT_EQ(time, terminal.now());
}

TEST_F(MomentTest, TheUserIsAskedWhileTimeRunsOn)
{
    terminal.askBeforeOrders([this](const std::vector<Order> &) {
        terminal.askBeforeOrders({}); // the window may be closed meanwhile
        terminal.skipTo(scenario.start.addSecs(60));
        return true;
    });
    const Terminal::Moment moment(terminal);
    const entry::Outcome placed = entry::place(
        QStringLiteral("A880010001"), {entry::line(QStringLiteral("609801.SH"), "Buy", 100, QString(), "Market")});
    ASSERT_EQ(0, placed.result) << qPrintable(placed.errors.join(QLatin1Char(' ')));
    EXPECT_EQ(scenario.start.addSecs(60), terminal.now());
    terminal.skipTo(scenario.start.addSecs(120));
    EXPECT_EQ(scenario.start.addSecs(60), terminal.now());
    const auto books = terminal.desk().read();
    EXPECT_EQ(scenario.start.addSecs(60), books->orders()[size_t(books->orderNumber(placed.id()))].entered);
}
