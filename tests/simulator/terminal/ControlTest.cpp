#include "TerminalTest.h"
#include "exchange/Exchange.h"

#include <algorithm>
#include <future>

using namespace sim;

namespace {

constexpr double kStill = 1e-6;

const QString kStock = QStringLiteral("A880010001");

/// Gives the command, and returns why it was not carried out.
QString run(Terminal &terminal, const char *text)
{
    Command command;
    EXPECT_EQ(QString(), Command::parse(QString::fromUtf8(text), command));
    std::promise<QString> done;
    terminal.control().run(command, [&](const QString &problem) { done.set_value(problem); });
    return done.get_future().get();
}

/// Gives commands that change nothing until the condition holds.
template <typename Condition>
void awaitWhileItRuns(Terminal &terminal, Condition condition)
{
    while (!condition())
        run(terminal, "clear");
}

/// The orders that were entered after the start, one line each.
QStringList newOrders(const Terminal &terminal, const QDateTime &start)
{
    QStringList lines;
    const TradingDesk::Reader books = terminal.desk().read();
    for (const Order &order : books->orders()) {
        if (order.entered >= start)
            lines.append(
                QStringLiteral("%1 %2 %3 %4 %5 %6 %7")
                    .arg(order.id, order.clientId, order.entered.toString(Qt::ISODateWithMs), order.instrument->symbol)
                    .arg(order.price)
                    .arg(order.qty)
                    .arg(int(order.status)));
    }
    return lines;
}

int openFlowOrders(const Terminal &terminal)
{
    const TradingDesk::Reader books = terminal.desk().read();
    return int(std::count_if(books->orders().begin(), books->orders().end(), [](const Order &order) {
        return order.algoId == QLatin1String("FLOW-01") && order.isOpen();
    }));
}

Scenario withFlow(int ordersPerSecond)
{
    Scenario scenario;
    QString error;
    EXPECT_TRUE(Scenario::read(Scenario::defaultFile(), scenario, error));
    scenario.start.setTime(QTime(14, 50));
    scenario.orderFlow = {QStringLiteral("880010001"), ordersPerSecond};
    return scenario;
}

/// The world after that many seconds, if somebody looks at it that often on the way.
QStringList playedFlow(int seconds, int looks)
{
    const Scenario scenario = withFlow(40);
    Terminal terminal(scenario, scenario.logins.first(), kStill);
    for (int look = 1; look <= looks; ++look) {
        terminal.skipTo(scenario.start.addMSecs(qint64(seconds) * 1000 * look / looks));
        const Terminal::Moment moment(terminal);
    }
    return newOrders(terminal, scenario.start);
}

} // namespace

class FastControlTest : public TerminalTest {};

class StandingControlTest : public StandingTerminalTest {};

TEST_F(FastControlTest, APauseStopsTimeUntilItResumes)
{
    EXPECT_EQ(QString(), run(terminal, "pause"));
    EXPECT_TRUE(terminal.isPaused());
    const QDateTime time = terminal.now();
    const std::optional<Quote> quote = terminal.exchange().quote(QStringLiteral("609001.SH"));
    EXPECT_EQ(QString(), run(terminal, "clear"));
    EXPECT_EQ(time, terminal.now());
    EXPECT_EQ(quote->time, terminal.exchange().quote(QStringLiteral("609001.SH"))->time);
    EXPECT_EQ(QString(), run(terminal, "resume"));
    awaitWhileItRuns(terminal, [&] { return terminal.now() > time; });
}

TEST_F(FastControlTest, NothingFillsDuringAPause)
{
    EXPECT_EQ(QString(), run(terminal, "pause"));
    Order order;
    order.tradingAccount = kStock;
    order.instrument = terminal.exchange().instrument(QStringLiteral("609001.SH"));
    order.qty = 100;
    order.priceType = PriceType::Market;
    const Order placed = terminal.desk().place({order}, terminal.now()).front();
    ASSERT_TRUE(placed.isOpen()) << qPrintable(placed.remark);
    terminal.playMarket(terminal.now());
    EXPECT_EQ(0, terminal.desk().order(placed.id)->filledQty);
    EXPECT_EQ(QString(), run(terminal, "resume"));
    awaitWhileItRuns(terminal, [&] { return terminal.desk().order(placed.id)->status == OrderStatus::Filled; });
}

TEST_F(StandingControlTest, AStepGoesToTheNextChangeOfTheQuotesAndPauses)
{
    for (int step = 1; step <= 3; ++step) {
        EXPECT_EQ(QString(), run(terminal, "step"));
        EXPECT_EQ(scenario.start.addSecs(qint64{3} * step), terminal.now());
        EXPECT_TRUE(terminal.isPaused());
    }
}

TEST_F(StandingControlTest, AJumpGoesForwardOnly)
{
    EXPECT_EQ(QString(), run(terminal, "jump close"));
    EXPECT_EQ(QDateTime(scenario.start.date(), QTime(15, 0), Qt::UTC), terminal.now());
    EXPECT_EQ(QStringLiteral("14:57:00 has passed: it is 2025-03-03 15:00:00"), run(terminal, "jump 14:57:00"));
    EXPECT_EQ(QString(), run(terminal, "jump 2025-03-04 09:30:00"));
    EXPECT_EQ(QDateTime(QDate(2025, 3, 4), QTime(9, 30), Qt::UTC), terminal.now());
}

TEST_F(StandingControlTest, AJumpGoesAtMostAYearAhead)
{
    EXPECT_EQ(QStringLiteral("2026-03-05 09:30:00 is more than a year ahead: jump there in steps"),
              run(terminal, "jump 2026-03-05 09:30:00"));
    run(terminal, "jump 9999-12-30 09:30:00");
    EXPECT_EQ(scenario.start, terminal.now());
    EXPECT_EQ(QString(), run(terminal, "jump 2026-03-04 09:30:00"));
    EXPECT_EQ(QDateTime(QDate(2026, 3, 4), QTime(9, 30), Qt::UTC), terminal.now());
    EXPECT_EQ(QString(), run(terminal, "jump 2026-03-05 09:30:00"));
}

TEST_F(StandingControlTest, TheSpeedChangesAtOnce)
{
    EXPECT_EQ(QString(), run(terminal, "speed 1000"));
    EXPECT_EQ(1000, terminal.speed());
    const QDateTime later = terminal.now().addSecs(2);
    awaitWhileItRuns(terminal, [&] { return terminal.now() >= later; });
}

TEST_F(StandingControlTest, FaultsAreSetAndCleared)
{
    run(terminal, "fault refuse-orders=3");
    run(terminal, "fault silent-klines");
    EXPECT_EQ(3, terminal.faults().value(Fault::RefuseOrders));
    run(terminal, "clear refuse-orders");
    EXPECT_FALSE(terminal.faults().isOn(Fault::RefuseOrders));
    EXPECT_TRUE(terminal.faults().isOn(Fault::SilentKLines));
    run(terminal, "clear");
    EXPECT_FALSE(terminal.faults().isOn(Fault::SilentKLines));
}

TEST_F(StandingControlTest, ASecurityIsHaltedAndResumed)
{
    const QString symbol = QStringLiteral("609001.SH");
    const auto isHalted = [&] {
        const Exchange &exchange = terminal.exchange();
        return exchange.isHalted(symbol, exchange.stepAt(terminal.now()));
    };
    EXPECT_EQ(QStringLiteral("609001.SH is not halted"), run(terminal, "resume 609001.SH"));
    EXPECT_EQ(QStringLiteral("nothing is not listed"), run(terminal, "halt nothing"));
    EXPECT_EQ(QString(), run(terminal, "halt 609001.SH"));
    terminal.skipTo(scenario.start.addSecs(30));
    EXPECT_TRUE(isHalted());
    EXPECT_EQ(QString(), run(terminal, "resume 609001.SH"));
    terminal.skipTo(scenario.start.addSecs(120));
    EXPECT_FALSE(isHalted());
}

TEST_F(StandingControlTest, ACancelThatComesTooLateFindsTheOrderFilled)
{
    Order order;
    order.tradingAccount = kStock;
    order.instrument = terminal.exchange().instrument(QStringLiteral("609001.SH"));
    order.qty = 100;
    order.priceType = PriceType::Limit;
    order.price =
        terminal.exchange().limits(order.instrument->symbol, terminal.exchange().stepAt(terminal.now())).lower;
    TradingDesk &desk = terminal.desk();
    const QString id = desk.place({order}, scenario.start).front().id;
    desk.advance(scenario.start.addSecs(1));
    EXPECT_EQ(OrderStatus::Reported, desk.order(id)->status);
    EXPECT_EQ(QStringList(QString()), desk.cancel({{id, kStock, true}}, scenario.start.addSecs(1)));
    desk.advance(scenario.start.addSecs(2));
    EXPECT_EQ(OrderStatus::Filled, desk.order(id)->status);
    EXPECT_EQ(order.price, desk.order(id)->averagePrice());
    EXPECT_EQ(QString::fromUtf8("撤单太晚，委托已全部成交"), desk.order(id)->remark);
}

TEST(Timeline, ActsAtItsExchangeTimes)
{
    Scenario scenario;
    QString error;
    ASSERT_TRUE(Scenario::read(Scenario::defaultFile(), scenario, error));
    const auto entry = [&](int ms, const char *text) {
        TimelineEntry entry;
        entry.time = scenario.start.addMSecs(ms);
        EXPECT_EQ(QString(), Command::parse(QString::fromUtf8(text), entry.command));
        return entry;
    };
    scenario.timeline = {entry(2500, "fault silent-klines"), entry(1500, "burst 3"), entry(9000, "clear")};
    Terminal terminal(scenario, scenario.logins.first(), kStill);
    terminal.skipTo(scenario.start.addMSecs(8000));
    const Terminal::Moment moment(terminal);
    EXPECT_TRUE(terminal.faults().isOn(Fault::SilentKLines));
    int orders = 0;
    const TradingDesk::Reader books = terminal.desk().read();
    for (const Order &order : books->orders()) {
        if (order.entered < scenario.start)
            continue;
        ++orders;
        EXPECT_EQ(scenario.start.addMSecs(1500), order.entered);
        EXPECT_EQ(OrderStatus::Cancelled, order.status);
        EXPECT_LE(scenario.start.addMSecs(2500), order.changed); // and the way of the cancel to the exchange
    }
    EXPECT_EQ(3, orders);
}

TEST(Timeline, NamesAtTheStartASymbolThatIsNotListed)
{
    Scenario scenario;
    QString error;
    ASSERT_TRUE(Scenario::read(Scenario::defaultFile(), scenario, error));
    for (const char *text : {"halt 609801.SH", "halt 609001.SH", "resume NOSUCH", "resume"}) { // the second is made up
        TimelineEntry entry;
        entry.time = scenario.start.addSecs(3600);
        EXPECT_EQ(QString(), Command::parse(QString::fromUtf8(text), entry.command));
        scenario.timeline.append(entry);
    }
    static QStringList s_log;
    s_log.clear();
    const QtMessageHandler before =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &context, const QString &message) {
            if (message.contains(QLatin1String("timeline")))
                s_log.append(QLatin1String(context.category) + QLatin1String(": ") + message);
        });
    {
        const Terminal terminal(scenario, scenario.logins.first(), kStill);
    }
    qInstallMessageHandler(before);
    EXPECT_EQ(
        QStringList(QStringLiteral("varnel.terminal: the timeline at 2025-03-03T11:00:00Z: NOSUCH is not listed")),
        s_log);
}

TEST(OrderFlow, IsTheSameHoweverOftenSomebodyLooks)
{
    const QStringList once = playedFlow(20, 1);
    EXPECT_LT(700, once.size());
    EXPECT_EQ(once, playedFlow(20, 9));
}

TEST(OrderFlow, CancelsWhatItEntersAndReleasesTheMoney)
{
    const auto moneyAfterTheClose = [](int ordersPerSecond) {
        const Scenario scenario = withFlow(ordersPerSecond);
        Terminal terminal(scenario, scenario.logins.first(), kStill);
        terminal.skipTo(scenario.start.addSecs(10));
        {
            const Terminal::Moment moment(terminal);
        }
        EXPECT_LE(ordersPerSecond, openFlowOrders(terminal)); // those of the last second
        run(terminal, "jump close");                          // it enters nothing on the way
        const int orders = newOrders(terminal, scenario.start).size();
        terminal.skipTo(QDateTime(scenario.start.date(), QTime(15, 50), Qt::UTC));
        {
            const Terminal::Moment moment(terminal);
        }
        EXPECT_EQ(orders, newOrders(terminal, scenario.start).size());
        EXPECT_EQ(0, openFlowOrders(terminal));
        const std::optional<Ledger> ledger = terminal.desk().ledger(kStock);
        return std::make_pair(ledger->cash().yuan(), ledger->frozenCash().yuan());
    };
    EXPECT_EQ(moneyAfterTheClose(0), moneyAfterTheClose(100));
}
