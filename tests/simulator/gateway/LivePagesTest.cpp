#include "Page.h"
#include "TerminalTest.h"
#include "gateway/PageConnection.h"

#include "CommonQuotaHandler.h"
#include "QvPresenterClass.h"

#include <QApplication>
#include <QFile>
#include <QSemaphore>
#include <QSet>
#include <QWidget>

#include <algorithm>
#include <atomic>
#include <memory>
#include <mutex>
#include <vector>

using namespace sim;

namespace {

const QString kOne = QStringLiteral("609801.SH");
const QString kOther = QStringLiteral("YL2503.CF");
const QString kUuid = QStringLiteral("u");

const char kTick[] = "on_tickUpdate";

constexpr int kPatienceMs = 30000;

/// True when the main thread sleeps, as far as the system tells.
bool mainThreadSleeps()
{
    QFile state(QStringLiteral("/proc/self/task/%1/stat").arg(QCoreApplication::applicationPid()));
    return !state.open(QIODevice::ReadOnly) || state.readAll().split(' ').value(2) == "S";
}

/// Keeps the bus busy until the view is deleted, or until the main thread waits because the view must not be deleted.
class BusyPresenter : public QvPresenterClass {
public:
    static constexpr int kEvent = 0x30003;

    BusyPresenter() : QvPresenterClass(QStringLiteral("busy"), nullptr, IMessageInterface::WebThreadType)
    {
        SubEvent(pluginPid(), kEvent, 1);
    }

    /// Leaves before its members are destroyed: the bus may be about to call.
    ~BusyPresenter() override { Terminal::instance().bus()->leave(pluginPid()); }

    void ProcEventMsg(QString, QVariant, QVariant) override
    {
        called.release();
        deletionBegins.acquire();
        for (bool ends = false; !ends;) {
            ends = mainThreadSleeps(); // asked first, because the main thread may fall asleep right after the deletion
            if (viewDeleted.tryAcquire())
                ends = viewWasDeletedMeanwhile = true;
        }
        returned.release();
    }

    QSemaphore called;
    QSemaphore deletionBegins;
    QSemaphore viewDeleted;
    QSemaphore returned;
    std::atomic<bool> viewWasDeletedMeanwhile{false};
};

/// The symbols of the ticks that the terminal sends, whether a page wants them or not.
class TerminalTicks {
public:
    TerminalTicks()
    {
        // Called on the emitting thread, perhaps once more after the disconnection.
        m_connection = QObject::connect(CommonQuotaHandler::instance(), &CommonQuotaHandler::sigTickDataUpdate,
                                        [log = m_log](const QString &symbol) {
                                            const std::lock_guard lock(log->mutex);
                                            log->symbols.append(symbol);
                                        });
    }

    ~TerminalTicks() { QObject::disconnect(m_connection); }

    /// Those of some ticks to come, without those of the current step.
    QSet<QString> awaitSymbols() const
    {
        constexpr int kOfAStep = 2;
        const int first = symbols().size() + kOfAStep;
        EXPECT_TRUE(await([&] { return symbols().size() >= first + 3 * kOfAStep; }));
        const QStringList later = symbols().mid(first);
        return {later.begin(), later.end()};
    }

private:
    struct Log {
        std::mutex mutex;
        QStringList symbols;
    };

    QStringList symbols() const
    {
        const std::lock_guard lock(m_log->mutex);
        return m_log->symbols;
    }

    const std::shared_ptr<Log> m_log = std::make_shared<Log>();
    QMetaObject::Connection m_connection;
};

/// Opens pages on a gateway. The base class decides whether quotes change.
template <typename Base>
class PagesTest : public Base {
protected:
    PagesTest() { EXPECT_TRUE(gateway.listen(0)); }

    std::unique_ptr<Page> openPage()
    {
        auto page = std::make_unique<Page>(gateway);
        EXPECT_TRUE(page->awaitOpen());
        return page;
    }

    static QStringList tickedSymbols(const Page &page)
    {
        QStringList symbols;
        const QVector<QJsonArray> ticks = page.heard(kTick);
        for (const QJsonArray &tick : ticks) {
            const QString text = tick.at(0).toString();
            symbols.append(text.contains(kOne) ? kOne : text.contains(kOther) ? kOther : text);
        }
        symbols.removeDuplicates();
        return symbols;
    }

    static bool awaitMoreTicks(const Page &page, int n)
    {
        const int before = page.heard(kTick).size();
        return await([&] { return page.heard(kTick).size() >= before + n; });
    }

    static void start(Page &page, const QString &uuid)
    {
        page.invoke("Vlx_startStrategy_REQ", {uuid, QStringLiteral("/grid.py"), 1, QStringLiteral("880010001"),
                                              QJsonObject(), QStringLiteral("mine")});
    }

    static QString strategyIn(const QJsonObject &reply)
    {
        return reply.value(QStringLiteral("resultData")).toObject().value(QStringLiteral("strategyID")).toString();
    }

    QList<PageConnection *> connections() const { return gateway.findChildren<PageConnection *>(); }

    Gateway gateway{QString(), {}};
};

using LivePagesTest = PagesTest<TerminalTest>;
using QuietPagesTest = PagesTest<QuietTerminalTest>;

} // namespace

TEST_F(LivePagesTest, APageReceivesTheTicksOfItsOwnSymbols)
{
    const auto one = openPage();
    const auto other = openPage();
    one->invoke("Sub_subscribe_REQ", {kUuid, QJsonArray{kOne, QStringLiteral("unknown")}});
    other->invoke("Sub_subscribe_REQ", {kUuid, kOther});
    const QJsonObject reply = one->awaitObject("Sub_subscribe_RES");
    EXPECT_EQ(QStringList({QStringLiteral("code"), QStringLiteral("msg"), QStringLiteral("uuid")}), reply.keys());
    EXPECT_EQ(QStringLiteral("0"), reply.value(QStringLiteral("code")).toString());
    EXPECT_EQ(kUuid, reply.value(QStringLiteral("uuid")).toString());

    ASSERT_TRUE(awaitMoreTicks(*one, 3));
    ASSERT_TRUE(awaitMoreTicks(*other, 3));
    EXPECT_EQ(QStringList(kOne), tickedSymbols(*one));
    EXPECT_EQ(QStringList(kOther), tickedSymbols(*other));
    const auto firstOf = [&](const char *event) {
        const auto isOfIt = [&](const QJsonObject &frame) {
            return frame.value(QStringLiteral("event")) == QLatin1String(event);
        };
        return std::find_if(one->frames.cbegin(), one->frames.cend(), isOfIt);
    };
    EXPECT_LT(firstOf("Sub_subscribe_RES"), firstOf(kTick));
}

TEST_F(LivePagesTest, APageReceivesNoTicksOfUnsubscribedSymbols)
{
    const auto page = openPage();
    const auto other = openPage();
    other->invoke("Sub_subscribe_REQ", {kUuid, kOne});
    page->invoke("Sub_subscribe_REQ", {kUuid, kOne + QLatin1Char(',') + kOther});
    ASSERT_TRUE(await([&] { return tickedSymbols(*page).size() == 2; }));
    page->invoke("UnSub_subscribe_REQ", {kUuid, QStringLiteral("[\"609801.SH\"]")});
    page->awaitObject("UnSub_subscribe_RES");
    page->frames.clear();
    ASSERT_TRUE(awaitMoreTicks(*page, 3));
    ASSERT_TRUE(awaitMoreTicks(*other, 3)); // it is still streamed
    EXPECT_EQ(QStringList(kOther), tickedSymbols(*page));

    page->invoke("UnSub_subscribeAll_REQ", {kUuid});
    page->awaitObject("UnSub_subscribeAll_RES");
    page->frames.clear();
    ASSERT_TRUE(awaitMoreTicks(*other, 3));
    EXPECT_TRUE(page->heard(kTick).isEmpty());
}

TEST_F(LivePagesTest, AQuoteThatNoPageWantsIsNotStreamed)
{
    const TerminalTicks ticks;
    const auto one = openPage();
    auto other = openPage();
    const auto call = [](Page &page, const char *operation, const QJsonArray &symbols) {
        page.invoke(qPrintable(QLatin1String(operation) + QStringLiteral("_REQ")), {kUuid, symbols});
        page.awaitObject(qPrintable(QLatin1String(operation) + QStringLiteral("_RES")));
        page.frames.clear();
    };
    call(*one, "Sub_subscribe", {kOne, kOther, kOther});
    call(*one, "Sub_subscribe", {kOther});
    call(*other, "Sub_subscribe", {kOne});
    EXPECT_EQ(QSet<QString>({kOne, kOther}), ticks.awaitSymbols());
    call(*one, "UnSub_subscribe", {kOne, kOther, QStringLiteral("unknown")});
    call(*one, "UnSub_subscribe", {kOne});
    EXPECT_EQ(QSet<QString>{kOne}, ticks.awaitSymbols()) << "the other page still wants it";

    call(*one, "Sub_subscribe", {kOther});
    call(*other, "UnSub_subscribeAll", {});
    EXPECT_EQ(QSet<QString>{kOther}, ticks.awaitSymbols());

    call(*other, "Sub_subscribe", {kOne, kOther});
    EXPECT_EQ(QSet<QString>({kOne, kOther}), ticks.awaitSymbols());
    other.reset();
    ASSERT_TRUE(await([&] { return connections().size() == 1; }));
    EXPECT_EQ(QSet<QString>{kOther}, ticks.awaitSymbols());
}

TEST_F(QuietPagesTest, ASubscriptionWithoutSymbolsIsAnswered)
{
    const auto page = openPage();
    page->invoke("Sub_subscribe_REQ", {QStringLiteral("u0")});
    page->invoke("Sub_subscribe_REQ", {QStringLiteral("u1"), QString()});
    page->invoke("UnSub_subscribe_REQ", {7, QJsonArray()});
    ASSERT_TRUE(page->awaitFrames(3));
    EXPECT_EQ(QStringLiteral("u0"), page->uuid(0));
    EXPECT_EQ(QStringLiteral("u1"), page->uuid(1));
    EXPECT_EQ(QStringLiteral("7"), page->uuid(2));
}

TEST_F(QuietPagesTest, ASubscriptionWithoutAUuidIsIgnored)
{
    const auto page = openPage();
    for (const char *method : {"Sub_subscribe_REQ", "UnSub_subscribe_REQ", "UnSub_subscribeAll_REQ"})
        page->invoke(method, {});
    page->invoke("Data_getToken_REQ", {QStringLiteral("sentinel")});
    ASSERT_TRUE(page->awaitFrames(1));
    EXPECT_EQ(QStringLiteral("sentinel"), page->uuid(0));
}

TEST_F(QuietPagesTest, AStrategyAnswersItsPageAndSendsItsStatusToAllPages)
{
    const auto page = openPage();
    const auto other = openPage();
    start(*page, kUuid);
    const QJsonObject reply = page->awaitObject("Vlx_startStrategy_RES");
    EXPECT_EQ(QStringLiteral("0"), reply.value(QStringLiteral("code")).toString());
    EXPECT_EQ(kUuid, reply.value(QStringLiteral("uuid")).toString());
    EXPECT_EQ(QStringLiteral("mine"),
              reply.value(QStringLiteral("resultData")).toObject().value(QStringLiteral("ExtField")).toString());
    const QString id = strategyIn(reply);
    const QVector<QJsonArray> started{{id, QStringLiteral("Starting")}, {id, QStringLiteral("Running")}};
    for (Page *const each : {page.get(), other.get()}) {
        EXPECT_TRUE(await([&] { return each->heard("on_vlxStrategyStatusUpdate").size() == 2; }));
        EXPECT_EQ(started, each->heard("on_vlxStrategyStatusUpdate"));
    }

    page->invoke("Vlx_queryStrategyStatus_REQ", {kUuid, id, QString()});
    EXPECT_EQ(QStringLiteral("0"),
              page->awaitObject("Vlx_queryStrategyStatus_RES").value(QStringLiteral("code")).toString());
    page->invoke("Vlx_stopStrategy_REQ", {kUuid, QStringLiteral("none"), QString()});
    const QJsonObject refused = page->awaitObject("Vlx_stopStrategy_RES");
    EXPECT_EQ(QStringLiteral("-1"), refused.value(QStringLiteral("code")).toString());
    EXPECT_EQ(QStringLiteral("策略不存在：none"), refused.value(QStringLiteral("msg")).toString());
    EXPECT_TRUE(other->heard("Vlx_startStrategy_RES").isEmpty());
}

TEST_F(QuietPagesTest, CustomMessagesReachTheirSubscribers)
{
    const char *const push = "on_vlxRcvCustomInfo";
    const auto page = openPage();
    const auto other = openPage();
    start(*page, kUuid);
    const QString id = strategyIn(page->awaitObject("Vlx_startStrategy_RES"));
    ASSERT_TRUE(await([&] { return page->heard("on_vlxStrategyStatusUpdate").size() == 2; }));
    page->invoke("Vlx_subStrategyMsg_REQ", {kUuid, id, QStringLiteral("1")});
    page->invoke("Vlx_sendCustomInfo_REQ", {kUuid, id, QStringLiteral("hello")});
    const QJsonArray echo{id, QStringLiteral("{\"count\":1,\"echo\":\"hello\",\"strategyID\":\"%1\"}").arg(id)};
    EXPECT_TRUE(await([&] { return page->heard(push).contains(echo); }));
    other->invoke("Data_getToken_REQ", {kUuid});
    other->awaitObject("Data_getToken_RES");
    EXPECT_TRUE(other->heard(push).isEmpty());
}

TEST_F(QuietPagesTest, SubscriptionsOfAClosedPageDoNotPassToLaterPages)
{
    const auto page = openPage();
    start(*page, kUuid);
    const QString id = strategyIn(page->awaitObject("Vlx_startStrategy_RES"));
    ASSERT_TRUE(await([&] { return page->heard("on_vlxStrategyStatusUpdate").size() == 2; }));
    page->invoke("Vlx_subStrategyMsg_REQ", {kUuid, id, QStringLiteral("1")});
    std::vector<std::unique_ptr<Page>> later(20);
    for (auto &each : later) {
        const auto gone = openPage();
        gone->invoke("Vlx_subStrategyMsg_REQ", {kUuid, id, QStringLiteral("1")});
        gone->invoke("Data_getToken_REQ", {kUuid});
        gone->awaitObject("Data_getToken_RES");
        gone->socket.close();
        ASSERT_TRUE(gone->awaitClosed());
        each = openPage(); // its view may have the address of the closed page's view
    }
    later.front()->invoke("Vlx_sendCustomInfo_REQ", {kUuid, id, QStringLiteral("hello")});
    ASSERT_TRUE(await([&] { return !page->heard("on_vlxRcvCustomInfo").isEmpty(); }));
    for (auto &each : later) {
        each->invoke("Data_getToken_REQ", {kUuid});
        each->awaitObject("Data_getToken_RES");
        EXPECT_TRUE(each->heard("on_vlxRcvCustomInfo").isEmpty());
    }
}

TEST_F(QuietPagesTest, EveryCallReachesTheTerminalOnce)
{
    // Strategies are numbered in the order of their starts, so the number counts the calls that reached the terminal.
    constexpr int kReloads = 5;
    int started = 0;
    for (int i = 0; i < kReloads; ++i) {
        const auto page = openPage(); // like a page that is reloaded
        start(*page, kUuid);
        start(*page, kUuid); // the same uuid, but another call
        started += 2;
        page->awaitObject("Vlx_startStrategy_RES", 1);
    }
    ASSERT_TRUE(await([&] { return connections().isEmpty(); }));
    for (int i = 0; i < kReloads; ++i) {
        const auto page = openPage();
        ASSERT_TRUE(await([&] { return connections().size() == 1; })); // otherwise none would not mean that it is gone
        start(*page, kUuid);
        page->socket.close(); // before the answer, but after the call
        ASSERT_TRUE(page->awaitClosed());
        ++started;
        ASSERT_TRUE(await([&] { return connections().isEmpty(); }));
    }
    const auto last = openPage();
    start(*last, kUuid);
    EXPECT_EQ(QStringLiteral("S20250303-%1").arg(started + 1, 4, 10, QLatin1Char('0')),
              strategyIn(last->awaitObject("Vlx_startStrategy_RES")));
}

TEST_F(QuietPagesTest, EveryOrderIsPlacedOnce)
{
    constexpr int kReloads = 5;
    const QString tag = QStringLiteral("counted");
    const auto insert = [&](Page &page) {
        page.invoke("Trade_insertOrder_REQ",
                    {kUuid, QStringLiteral("880010001"), kOne, QString(), QStringLiteral("Buy"),
                     QStringLiteral("Limit"), QStringLiteral("18.00"), QStringLiteral("100"), tag});
    };
    const auto placed = [&] {
        const auto books = terminal.desk().read();
        return std::count_if(books->orders().cbegin(), books->orders().cend(),
                             [&](const Order &order) { return order.tag == tag; });
    };
    int calls = 0;
    for (int i = 0; i < kReloads; ++i) {
        const auto page = openPage(); // like a page that is reloaded
        insert(*page);
        insert(*page); // the same uuid, but another order
        calls += 2;
        EXPECT_EQ(QStringLiteral("0"),
                  page->awaitObject("Trade_insertOrder_RES", 1).value(QStringLiteral("code")).toString());
        EXPECT_EQ(calls, placed());
    }
    for (int i = 0; i < kReloads; ++i) {
        const auto page = openPage();
        insert(*page);
        page->socket.close(); // before the answer, but after the order was sent
        ASSERT_TRUE(page->awaitClosed());
        ++calls;
    }

    // The calls of all pages before it have been made when this page gets its answer.
    const auto last = openPage();
    last->invoke("Trade_insertOrder_REQ", {kUuid}); // too few arguments: answered without an order
    last->awaitObject("Trade_insertOrder_RES");
    EXPECT_EQ(QJsonArray{QString()}, last->heard("Trade_insertOrder_RES").value(0));
    EXPECT_EQ(calls, placed());
}

TEST_F(LivePagesTest, EveryPageReceivesTheUpdatesOfAnOrder)
{
    const auto page = openPage();
    const auto other = openPage();
    page->invoke("Trade_insertOrder_REQ",
                 {kUuid, QStringLiteral("880010001"), kOne, QString(), QStringLiteral("Buy"), QStringLiteral("Market"),
                  QString(), QStringLiteral("200"), QStringLiteral("mine")});
    const QJsonObject reply = page->awaitObject("Trade_insertOrder_RES");
    EXPECT_EQ(QStringLiteral("0"), reply.value(QStringLiteral("code")).toString())
        << qPrintable(reply.value(QStringLiteral("msg")).toString());
    const QString id = reply.value(QStringLiteral("resultData")).toObject().value(QStringLiteral("orderID")).toString();
    ASSERT_FALSE(id.isEmpty());
    const auto tellsOf = [&](const Page &each, const char *event, const QString &text) {
        const QVector<QJsonArray> pushes = each.heard(event);
        return std::any_of(pushes.cbegin(), pushes.cend(), [&](const QJsonArray &push) {
            const QString records = push.at(0).toString();
            return records.contains(id) && records.contains(text);
        });
    };
    for (Page *const each : {page.get(), other.get()}) {
        EXPECT_TRUE(await([&] { return tellsOf(*each, "on_entrustUpdate", QStringLiteral("Filled")); }));
        EXPECT_TRUE(await([&] { return tellsOf(*each, "on_executionUpdate", QString()); }));
        EXPECT_FALSE(each->heard("on_AssetUpdate").isEmpty());
        EXPECT_FALSE(each->heard("on_positionUpdate").isEmpty());
    }
}

TEST_F(QuietPagesTest, PermissionsComeFromTheScenario)
{
    const auto page = openPage();
    const struct {
        const char *account;
        const char *type;
        int held;
    } table[] = {{"880010001", "KFZ;SNB", 1},
                 {"880010001", "KFZ_SNB", 0},
                 {"880010002", "KFZ;SNB", 0},
                 {"880010002", "TWAP", 0},
                 {"990020001", "KFZ;SNB", 1}};
    int n = 0;
    for (const auto &row : table) {
        page->invoke("Data_getPermission_REQ", {kUuid, QLatin1String(row.account), QLatin1String(row.type)});
        EXPECT_EQ(QJsonValue(row.held),
                  page->awaitObject("Data_getPermission_RES", n++).value(QStringLiteral("resultData")))
            << row.account << row.type;
    }
}

TEST_F(QuietPagesTest, ASettingSavedByOnePageIsReadByAnother)
{
    const auto page = openPage();
    const auto other = openPage();
    const QString value = QStringLiteral("深色, \"7\"");
    page->invoke("Data_saveSetting_REQ", {kUuid, QStringLiteral("live/theme"), value});
    page->awaitObject("Data_saveSetting_RES");
    other->invoke("Data_getSetting_REQ", {kUuid, QStringLiteral("live/theme")});
    EXPECT_EQ(value, other->awaitObject("Data_getSetting_RES").value(QStringLiteral("resultData")).toString());
}

TEST_F(QuietPagesTest, AViewOutlivesTheCurrentCallOfTheBus)
{
    const auto page = openPage();
    ASSERT_TRUE(await([&] { return connections().size() == 1; }));
    BusyPresenter presenter;
    terminal.bus()->announce(BusyPresenter::kEvent, {});
    ASSERT_TRUE(presenter.called.tryAcquire(1, kPatienceMs));
    const QWidgetList widgets = QApplication::topLevelWidgets();
    ASSERT_EQ(1, widgets.size()); // the view
    QObject::connect(widgets.first(), &QObject::destroyed, [&presenter] { presenter.viewDeleted.release(); });
    presenter.deletionBegins.release();
    delete connections().first();
    ASSERT_TRUE(presenter.returned.tryAcquire(1, kPatienceMs));
    EXPECT_FALSE(presenter.viewWasDeletedMeanwhile);
}

TEST_F(QuietPagesTest, PagesCanBeClosedWhileTheBusSendsToAllPages)
{
    // "Orders loaded" is broadcast on the bus thread.
    constexpr int kOrdersLoaded = 0x30001;
    constexpr int kPages = 20;
    constexpr int kNotices = 200;
    const auto watching = openPage();
    for (int i = 0; i < kPages; ++i) {
        const auto page = openPage();
        ASSERT_TRUE(await([&] { return connections().size() == 2; }));
        for (int n = 0; n < kNotices; ++n)
            terminal.bus()->announce(kOrdersLoaded, {});
        ASSERT_TRUE(await([&] { return !page->heard("on_orderLoaded").isEmpty(); }));
        delete connections().last(); // most likely while they are being sent
    }
    EXPECT_TRUE(await([&] { return watching->heard("on_orderLoaded").size() == kPages * kNotices; }));
    EXPECT_EQ(QJsonArray(), watching->heard("on_orderLoaded").value(0));
}
