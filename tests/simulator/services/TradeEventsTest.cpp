#include "TerminalTest.h"
#include "host/OrderEntry.h"

#include "CUnPackMessageCommon.h"
#include "QvPresenterClass.h"

#include <QSet>

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <thread>

using namespace sim;
using namespace Tessar_Fields;

namespace {

enum EventId {
    OrdersLoaded = 0x30001,
    OrderEnteredId = 0x30003,
    PersonExecution = 0x30004,
    OrderChangedId = 0x30005,
    StrategyExecution = 0x30006,
    Asset = 0x300A0,
    PositionId = 0x31002,
};

struct Event {
    int id;
    QVariantMap row;
};

/// Records the events that the bus delivers.
class Listener : public QvPresenterClass {
public:
    Listener() : QvPresenterClass(QStringLiteral("Listener"), nullptr, IMessageInterface::WebThreadType)
    {
        for (const int id :
             {OrdersLoaded, OrderEnteredId, PersonExecution, OrderChangedId, StrategyExecution, Asset, PositionId})
            SubEvent(pluginPid(), id, 1);
    }

    void ProcEventMsg(QString, QVariant type, QVariant data) override
    {
        CUnPackMessageCommon unpack;
        unpack.SetUnPackMsg(data, false);
        QVariantMap row = unpack.GetRowValue();
        row.remove(System::clientMsgID); // differs for every message
        const std::lock_guard lock(m_mutex);
        m_events.append({type.toInt(), row});
        m_onBusThread = m_onBusThread && std::this_thread::get_id() != m_maker;
        m_arrived.notify_all();
    }

    /// All events up to the first one that passes the test, which is included.
    template <typename Test>
    QList<Event> until(Test isLast)
    {
        std::unique_lock lock(m_mutex);
        int seen = 0;
        const auto isThere = [&] {
            while (seen < m_events.size()) {
                if (isLast(m_events[seen++]))
                    return true;
            }
            return false;
        };
        EXPECT_TRUE(m_arrived.wait_for(lock, std::chrono::seconds(30), isThere));
        EXPECT_TRUE(m_onBusThread);
        const QList<Event> events = m_events.mid(0, seen);
        m_events = m_events.mid(seen);
        return events;
    }

    /// All events up to the one that tells that the order is in that state.
    QList<Event> untilOrderIs(const QString &id, const char *status)
    {
        return until([&](const Event &event) {
            return event.row.value(Security::orderID).toString() == id &&
                   event.row.value(Security::orderStatus).toString() == QLatin1String(status);
        });
    }

    /// All events up to the asset event of the account, which is the last event of an order or cancel.
    QList<Event> untilAssetOf(const QString &account)
    {
        return until([&](const Event &event) {
            return event.id == Asset && event.row.value(UserAccount::tradingAccount).toString() == account;
        });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_arrived;
    QList<Event> m_events;
    bool m_onBusThread = true;
    const std::thread::id m_maker = std::this_thread::get_id();
};

QList<QVariantMap> executionRecords()
{
    int total = 0;
    return BusinessDataInterface::GetExecutionListByCustomKey({}, total, 0, 0, QStringList());
}

/// In real time, so that no quote changes during a test.
class TradeEventsTest : public TerminalTest {
protected:
    TradeEventsTest() : TerminalTest(1) {}
    ~TradeEventsTest() override
    {
        terminal.bus()->stop();
    } // so that the bus does not call a listener during its destruction

    QList<Event> withId(const QList<Event> &events, int id) const
    {
        QList<Event> found;
        for (const Event &event : events) {
            if (event.id == id)
                found.append(event);
        }
        return found;
    }

    const QString share = QStringLiteral("609801.SH");
    const QString account = scenario.fundAccounts.first().tradingAccounts.last(); // an account without orders
    const QString futuresAccount = scenario.fundAccounts.last().tradingAccounts.first();
    const QString future = QStringLiteral("YL2503.CF");
    Listener listener;
};

} // namespace

TEST_F(TradeEventsTest, ANewOrderIsAnnouncedWithTheRecordOfTheList)
{
    const entry::Outcome outcome =
        entry::place(futuresAccount, {entry::line(future, "BuyOpen", 1, QString(), "Market")});
    const QList<Event> events = withId(listener.untilAssetOf(futuresAccount), OrderEnteredId);
    ASSERT_EQ(1, events.size());
    EXPECT_EQ(outcome.id(), events[0].row.value(Security::orderID).toString());
    EXPECT_EQ(QStringLiteral("ToBeSent"), events[0].row.value(Security::orderStatus).toString());

    const QList<Event> later = withId(listener.untilOrderIs(outcome.id(), "Reported"), OrderChangedId);
    ASSERT_EQ(2, later.size());
    EXPECT_EQ(QStringLiteral("Sent"), later[0].row.value(Security::orderStatus).toString());
    EXPECT_EQ(BusinessDataInterface::GetOrderDetailByOrderID(outcome.id()), later[1].row);
    QVariantMap accepted = events[0].row; // apart from its state it is the same record
    for (const QString &field : {Security::orderStatus, QStringLiteral("exchangeOrderID")})
        accepted[field] = later[1].row.value(field);
    EXPECT_EQ(accepted, later[1].row);
}

TEST_F(TradeEventsTest, ARejectedOrderIsAnnouncedAsANewOrder)
{
    const entry::Outcome outcome = entry::place(account, {entry::line(share, "Buy", 100, QStringLiteral("17"))});
    EXPECT_EQ(QStringLiteral("可用资金不足"), outcome.text());
    const Event event = listener.until([&](const Event &event) { return event.id == OrderEnteredId; }).last();
    EXPECT_EQ(outcome.id(), event.row.value(Security::orderID).toString());
    EXPECT_EQ(QStringLiteral("Rejected"), event.row.value(Security::orderStatus).toString());
    EXPECT_EQ(outcome.text(), event.row.value(QStringLiteral("remark")).toString());
}

TEST_F(TradeEventsTest, AFillIsAnnouncedWithItsOrderItsPositionAndItsAccount)
{
    const entry::Outcome outcome =
        entry::place(futuresAccount, {entry::line(future, "SellOpen", 1, QString(), "Market")});
    listener.untilOrderIs(outcome.id(), "Reported");
    terminal.playMarket(terminal.now().addSecs(3600));
    const auto isOurs = [&](const Event &event) {
        return event.id == PersonExecution && event.row.value(Security::orderID).toString() == outcome.id();
    };
    QList<Event> events = listener.until(isOurs);
    const Event execution = events.last();
    events += listener.untilAssetOf(futuresAccount);

    const QVariantMap order = BusinessDataInterface::GetOrderDetailByOrderID(outcome.id());
    EXPECT_EQ(QStringLiteral("Filled"), order.value(Security::orderStatus).toString());
    int changes = 0;
    for (const Event &event : withId(events, OrderChangedId)) {
        if (event.row.value(Security::orderID).toString() != outcome.id())
            continue;
        ++changes;
        EXPECT_EQ(order, event.row);
    }
    EXPECT_EQ(1, changes);
    EXPECT_FALSE(execution.row.value(Security::execID).toString().isEmpty());
    EXPECT_TRUE(executionRecords().contains(execution.row));

    int positions = 0;
    for (const Event &event : withId(events, PositionId)) {
        if (event.row.value(Security::symbol).toString() == future &&
            event.row.value(Security::positionFlag).toString() == QStringLiteral("Short") &&
            event.row.value(UserAccount::tradingAccount).toString() == futuresAccount)
            ++positions;
    }
    EXPECT_EQ(1, positions);
}

TEST_F(TradeEventsTest, APositionIsAnnouncedWithTheRecordOfTheList)
{
    entry::place(futuresAccount, {entry::line(future, "BuyOpen", 1, QString(), "Market")});
    terminal.playMarket(terminal.now().addSecs(3600));
    const QList<QVariantMap> held = BusinessDataInterface::GetPositionListByAccount(
        CBusinessDataBase::GetInstance()->GetAccountDetailsByTradinngAccount(futuresAccount), QString(), future,
        QString(), QString(), QString(), QString());
    ASSERT_FALSE(held.isEmpty());
    const QList<Event> events =
        listener.until([&](const Event &event) { return event.id == PositionId && event.row == held.first(); });
    EXPECT_EQ(held.first(), events.last().row);
}

TEST_F(TradeEventsTest, ACancelIsAnnouncedAsAChangedOrder)
{
    const QString stockAccount = scenario.fundAccounts.first().tradingAccounts.first();
    const QString id = entry::place(stockAccount, {entry::line(share, "Buy", 100, QStringLiteral("17"))}).id();
    listener.untilOrderIs(id, "Reported");
    EXPECT_EQ(QStringLiteral("0"), entry::cancel(QStringList{id}).status());
    const QList<Event> changes = withId(listener.untilAssetOf(stockAccount), OrderChangedId);
    ASSERT_EQ(2, changes.size());
    EXPECT_EQ(QStringLiteral("ToBeCancelled"), changes[0].row.value(Security::orderStatus).toString());
    EXPECT_EQ(QStringLiteral("Cancelled"), changes[1].row.value(Security::orderStatus).toString());
    EXPECT_EQ(BusinessDataInterface::GetOrderDetailByOrderID(id), changes[1].row);
}

TEST_F(TradeEventsTest, ExecutionsOfStrategiesHaveTheirOwnEvent)
{
    terminal.playMarket(terminal.now().addSecs(qint64{4} * 3600));
    const QString lastId = executionRecords().first().value(Security::execID).toString();
    const QList<Event> events =
        listener.until([&](const Event &event) { return event.row.value(Security::execID).toString() == lastId; });
    int ofStrategies = 0;
    int ofPersons = 0;
    for (const Event &event : events) {
        const bool isOfStrategy = !event.row.value(Security::algoOrderID).toString().isEmpty();
        if (event.id == StrategyExecution && isOfStrategy)
            ++ofStrategies;
        else if (event.id == PersonExecution && !isOfStrategy)
            ++ofPersons;
        else
            EXPECT_TRUE(event.id != StrategyExecution && event.id != PersonExecution);
    }
    EXPECT_GT(ofStrategies, 0);
    EXPECT_GT(ofPersons, 0);
}

TEST_F(TradeEventsTest, AfterTheSettlementEveryPositionIsReportedAndANewDayLoadsItsOrders)
{
    terminal.playMarket(QDateTime(QDate(2025, 3, 4), QTime(9, 0), Qt::UTC));
    bool isLoaded = false; // the first time is that of the start
    const QList<Event> events = listener.until([&](const Event &event) {
        const bool isSecond = isLoaded && event.id == OrdersLoaded;
        isLoaded = isLoaded || event.id == OrdersLoaded;
        return isSecond;
    });
    QSet<QString> reported;
    for (const Event &event : withId(events, PositionId))
        reported.insert(event.row.value(UserAccount::tradingAccount).toString() + QLatin1Char(' ') +
                        event.row.value(Security::symbol).toString());
    const std::optional<Ledger> ledger = terminal.desk().ledger(QStringLiteral("A880010001"));
    ASSERT_FALSE(ledger->positions().isEmpty());
    for (const Position &position : ledger->positions())
        EXPECT_TRUE(reported.contains(QStringLiteral("A880010001 ") + position.instrument->symbol));
    EXPECT_TRUE(executionRecords().isEmpty());
}

TEST_F(TradeEventsTest, OrdersLoadedIsAnnouncedOnceAndFirst)
{
    terminal.playMarket(terminal.now());
    terminal.playMarket(terminal.now().addSecs(3600));
    entry::place(account, {entry::line(share, "Buy", 100, QStringLiteral("17"))});
    const QList<Event> events = listener.until([&](const Event &event) {
        return event.id == OrderEnteredId && event.row.value(UserAccount::tradingAccount).toString() == account;
    });
    EXPECT_EQ(OrdersLoaded, events.first().id);
    EXPECT_TRUE(events.first().row.isEmpty());
    EXPECT_EQ(1, withId(events, OrdersLoaded).size());
}

TEST_F(TradeEventsTest, AListOfOrdersCausesOneAssetEvent)
{
    entry::place(
        futuresAccount,
        QVector<VarnelLogic::OrderRequest>(500, entry::line(future, "BuyOpen", 1, QString(), "Market")).toList());
    const QString another = scenario.fundAccounts[3].tradingAccounts.first();
    entry::place(another, {entry::line(future, "BuyOpen", 1, QString(), "Market")});
    QList<Event> events = listener.untilAssetOf(another);
    const auto isChange = [](const Event &event) { return event.id == OrderChangedId; };
    events.erase(std::remove_if(events.begin(), events.end(), isChange), events.end()); // the list may be on its way
    EXPECT_EQ(501, withId(events, OrderEnteredId).size());
    EXPECT_EQ(2, withId(events, Asset).size());
    EXPECT_EQ(futuresAccount, events[500].row.value(UserAccount::tradingAccount).toString());
    EXPECT_EQ(Asset, events[500].id);
}
