#include "StrategiesTest.h"

#include "HostQuotes.h"
#include "ThreadLatch.h"
#include "bridge/DataThread.h"

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QUuid>

#include <array>
#include <atomic>
#include <memory>
#include <mutex>
#include <shared_mutex>
#include <vector>

using testing::_;
using testing::AnyNumber;
using testing::Return;

namespace {

using namespace Tessar_Fields;
using namespace Varnel_Fields;

constexpr int kRounds = 300; ///< of each thread
constexpr int kPages = 6;
constexpr int kIds = 20; ///< orders and executions that come again and again

const QString tickUpdate = u"on_tickUpdate"_qs;
const QString candlesReply = u"Data_getKLineData_RES"_qs;
const QString strategyReply = u"Vlx_queryStrategyStatus_RES"_qs;
const QStringList symbols{u"S0"_qs, u"S1"_qs, u"S2"_qs};

/// What threads hand to each other. Any thread.
template <typename T>
class Handover {
public:
    void add(const T &item)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_items.push_back(item);
    }

    std::vector<T> takeAll()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return std::exchange(m_items, {});
    }

private:
    std::mutex m_mutex;
    std::vector<T> m_items;
};

/// A page that comes, calls and goes.
struct APage {
    RecordingView view;
    DataThread *data = new DataThread(&view);             ///< goes with the view
    QStringList uuids;                                    ///< of the calls that are answered before they return
    const QString later = QUuid::createUuid().toString(); ///< of those that other threads answer
};

/// Eight threads of the host deliver everything that it can deliver, while pages come, go, subscribe and call on the
/// owning thread, as the header allows.
class EightThreadsTest : public StrategiesTest {
protected:
    EightThreadsTest()
    {
        QLoggingCategory::setFilterRules(u"*=false"_qs); // the recorder's lock would order the threads
        const auto fill = testing::Return(true);
        EXPECT_CALL(host, VarnelEntrustReportGen_fillLineData(_, _, _, _, _)).Times(AnyNumber()).WillRepeatedly(fill);
        EXPECT_CALL(host, VarnelDealReportGen_fillLineData(_, _, _, _, _)).Times(AnyNumber()).WillRepeatedly(fill);
        EXPECT_CALL(host, VarnelPositionReportGen_fillLineData(_, _, _, _, _, _, _, _))
            .Times(AnyNumber())
            .WillRepeatedly(fill);
        EXPECT_CALL(host, CommonQuotaHandler_GetQuotaSnapshot(_, _)).Times(AnyNumber());
        EXPECT_CALL(host, VarnelBusinessDataInterface_GetSecurityDetailsBySymbol(_)).Times(AnyNumber());
        EXPECT_CALL(host, VarnelBusinessDataInterface_GetAccountInfoListFromTrade(_, true)).Times(AnyNumber());
        EXPECT_CALL(host, VarnelInitStateMgr_IsInited(_)).Times(AnyNumber()).WillRepeatedly(Return(true));
        EXPECT_CALL(host, VarnelUtils_GetCurrentShowType()).Times(AnyNumber());
        EXPECT_CALL(host, CommonQuotaHandler_SubscribeQuota(_, true, 0)).Times(AnyNumber());
        EXPECT_CALL(host, QvCore_getCurrentToken()).Times(AnyNumber()).WillRepeatedly(Return(u"token"_qs));
        EXPECT_CALL(host, QvPresenterClass_sendRequest_Async(_))
            .Times(AnyNumber())
            .WillRepeatedly([this](const MessageRecord &request) {
                candleRequests.add(request.clientMsgId);
                return 0;
            });
        EXPECT_CALL(host, QvPresenterClass_sendRequest_Sync(_, _)).Times(AnyNumber()).WillRepeatedly(Return(3));
        EXPECT_CALL(host, QvPresenterClass_PutEvent(_, _))
            .Times(AnyNumber())
            .WillRepeatedly([this](int, const MessageRecord &event) { strategyCalls.add(event.fields); });
    }

    /// What a thread of the host does again and again; round: from 0.
    using Task = std::function<void(int round)>;

    /// Straight into the presenter: the mock's bus would take a lock, which would order the threads.
    void take(int type, const QVariantMap &row) const { center->ProcEventMsg(QString(), type, packedRow(row)); }

    void answerStrategyCalls()
    {
        for (const MessageFields &fields : strategyCalls.takeAll()) {
            QVariantMap row;
            for (const auto &[key, value] : fields)
                row.insert(key, value);
            if (row.value(VeloxFields::msgSubEventType) != VeloxValues::MSEventQueryStrategyStatusReq)
                continue;
            row.insert(System::textDescription, u"0"_qs);
            row.insert(VeloxFields::msgSubEventType, VeloxValues::MSEventQueryStrategyStatusRsp);
            take(start.strategyOutEventId, row);
        }
    }

    void answerCandleRequests()
    {
        for (const QString &id : candleRequests.takeAll())
            center->ProcQuotationMsg(QString(), u"KLineResponse"_qs,
                                     QVariantList{QVariantMap{{System::clientMsgID, id}, {u"close"_qs, 7.25}}});
    }

    /// All kinds of events and quotes, and what any thread may call.
    std::array<Task, 8> hostThreads()
    {
        const auto tick = [](int symbol) {
            return [symbol](int round) {
                emitTick(symbols.at(symbol), {{u"symbol"_qs, symbols.at(symbol)}, {u"round"_qs, round}});
            };
        };
        return {
            tick(0),
            tick(1),
            [this](int round) {
                take(round % 2 ? changedOrderEvent : orderEvent,
                     {{Tessar_Fields::Security::orderID, QString::number(round % kIds)}, {u"round"_qs, round}});
            },
            [this](int round) {
                take(round % 2 ? strategyExecutionEvent : executionEvent,
                     {{Tessar_Fields::Security::execID, QString::number(round % kIds)}});
            },
            [this](int round) {
                take(positionEvent, {{Tessar_Fields::Security::symbol, symbols.at(round % 3)}});
                take(assetEvent, {{UserAccount::tradingAccount, u"t"_qs}});
            },
            [this](int) {
                // As the header asks: no view goes away meanwhile.
                const std::shared_lock<std::shared_mutex> lock(viewsStay);
                take(ordersLoadedEvent, {});
            },
            [this](int round) {
                answerStrategyCalls();
                take(start.strategyOutEventId, {{VeloxFields::msgSubEventType, VeloxValues::MSEventStrategyCustomMsg},
                                                {VeloxFields::strategyCustomMsgID, u"m"_qs},
                                                {VeloxFields::strategyCustomMsg, QString::number(round)}});
                take(start.strategyOutEventId,
                     {{VeloxFields::msgSubEventType, VeloxValues::MSEventStrategyStatusUpdate},
                      {Strategy::strategyID, QString::number(round)}});
            },
            [this](int round) {
                answerCandleRequests();
                const QString key = u"key%1"_qs.arg(round % 5);
                center->saveSetting(key, QString::number(round));
                EXPECT_EQ(center->getSetting(key), QString::number(round)); // no other thread saves this one
                center->getPermission(u"f"_qs, u"x"_qs);
                QList<QVariantMap> candles;
                center->syncRequestKLineData(u"s"_qs, QString(), QString(), MinuteKLinePeriod, candles);
                QMetaObject::invokeMethod(center, "AsyncStartEntrustTimer", Qt::QueuedConnection);
            },
        };
    }

    void invoke(APage &page, const QString &method, const QVariantList &arguments)
    {
        const QString uuid = QUuid::createUuid().toString();
        page.uuids.append(uuid);
        EXPECT_TRUE(page.data->onInvokeMethod(0, 0, method, QVariantList{uuid} + arguments));
    }

    /// Pages come and go, one after the other at the same few places.
    void livePage(int round)
    {
        std::unique_ptr<APage> &page = pages.at(size_t(round) % size_t(pagesAtOnce));
        if (page) {
            checkAnswers(*page);
            if (round % 3 == 0)
                center->unReg(&page->view);
            {
                const std::unique_lock<std::shared_mutex> lock(viewsStay);
                page.reset();
            }
            proceed(); // with one page fewer
        }
        page = std::make_unique<APage>();
        center->reg(&page->view);
        center->subscribe(&page->view, u"s"_qs, symbols);
        invoke(*page, u"Data_getToken_REQ"_qs, {});
        invoke(*page, u"Data_getSetting_REQ"_qs, {u"key1"_qs});
        EXPECT_TRUE(page->data->onInvokeMethod(0, 0, u"Data_getKLineData_REQ"_qs,
                                               {page->later, u"s"_qs, u"from"_qs, u"to"_qs, u"1"_qs}));
        call("Vlx_queryStrategyStatus_REQ", {page->later, u"1"_qs, QString()}, &page->view);
        call("Vlx_subStrategyMsg_REQ", {u"m"_qs, u"m"_qs, u"1"_qs}, &page->view);
        if (round % 2 == 0)
            center->unsubscribe(&page->view, u"s"_qs, {symbols.first()});
        if (round % 5 == 0)
            center->unsubscribeAll(&page->view, u"s"_qs);
        proceed();
    }

    /// Hands what has come to the library, and lets the threads go on for some rounds.
    void proceed()
    {
        steps.fetch_add(1, std::memory_order_relaxed);
        QCoreApplication::processEvents();
    }

    /// Keeps the threads in step with the pages, however quick they are. It orders nothing that the sanitizer could
    /// see.
    void awaitPages(int round) const
    {
        constexpr int roundsOfAStep = 3;
        while (round >= steps.load(std::memory_order_relaxed) * roundsOfAStep)
            std::this_thread::yield();
    }

    static QString uuidIn(const ViewEvent &event)
    {
        const QByteArray reply = event.arguments.value(0).toString().toUtf8();
        return QJsonDocument::fromJson(reply).object().value(u"uuid"_qs).toString();
    }

    /// Each call that needs no other thread has had its one answer, and the others at most one. No answer is to a call
    /// of another page, such as the one that lay at the same address before.
    static void checkAnswers(const APage &page)
    {
        QStringList answered;
        QSet<QString> later;
        const QList<ViewEvent> events = page.view.events();
        for (const ViewEvent &event : events) {
            if (event.name.startsWith(u"Data_get"_qs) && page.uuids.contains(uuidIn(event))) {
                answered.append(uuidIn(event));
            } else if (event.name == candlesReply || event.name == strategyReply) {
                EXPECT_EQ(uuidIn(event), page.later);
                EXPECT_FALSE(later.contains(event.name)) << "twice";
                later.insert(event.name);
            }
        }
        EXPECT_EQ(answered, page.uuids);
    }

    /// The rounds of the ticks of a symbol, in the order in which the page got them.
    static QList<int> roundsOf(const RecordingView &view, const QString &symbol)
    {
        QList<int> rounds;
        const QList<ViewEvent> events = view.events();
        for (const ViewEvent &event : events) {
            if (event.name != tickUpdate)
                continue;
            const QJsonObject tick = QJsonDocument::fromJson(event.arguments.first().toString().toUtf8()).object();
            if (tick.value(u"symbol"_qs).toString() == symbol)
                rounds.append(tick.value(u"round"_qs).toInt());
        }
        return rounds;
    }

    /// Lets all threads work, with pages that come and go meanwhile, and delivers what is left.
    void run()
    {
        ThreadLatch begin;
        std::atomic<int> running{8};
        const std::array<Task, 8> tasks = hostThreads();
        std::array<BusThread, 8> threads;
        for (size_t i = 0; i < threads.size(); ++i) {
            threads[i].post([&, i] {
                begin.wait();
                for (int round = 0; round < kRounds; ++round) {
                    awaitPages(round);
                    tasks[i](round);
                }
                --running;
            });
        }
        begin.open();
        while (running > 0)
            livePage(lives++);
        for (BusThread &thread : threads)
            thread.wait();
        answerStrategyCalls();
        answerCandleRequests();
        QMetaObject::invokeMethod(center, "slotEntrustTimeout");
        QMetaObject::invokeMethod(center, "slotExecutionTimeout");
        QCoreApplication::processEvents();
        for (const std::unique_ptr<APage> &page : pages) {
            if (page)
                checkAnswers(*page);
        }
    }

    std::atomic<int> steps{0}; ///< of the pages
    int pagesAtOnce = kPages;
    int lives = 0; ///< how many pages have been
    Handover<QString> candleRequests;
    Handover<MessageFields> strategyCalls;
    std::shared_mutex viewsStay; ///< held together while orders are said to be loaded, and alone while a view ends
    std::array<std::unique_ptr<APage>, kPages> pages;
};

TEST_F(EightThreadsTest, APageThatStaysMissesNothingWhileOthersComeAndGo)
{
    RecordingView witness;
    center->reg(&witness);
    center->subscribe(&witness, u"w"_qs, {symbols.at(0), symbols.at(1)});
    call("Vlx_subStrategyMsg_REQ", {u"m"_qs, u"m"_qs, u"1"_qs}, &witness);
    run();

    QList<int> all;
    for (int round = 0; round < kRounds; ++round)
        all.append(round);
    EXPECT_EQ(roundsOf(witness, symbols.at(0)), all);
    EXPECT_EQ(roundsOf(witness, symbols.at(1)), all);
    const QStringList names = witness.eventNames();
    for (const char *each :
         {"on_positionUpdate", "on_AssetUpdate", "on_orderLoaded", "on_vlxRcvCustomInfo", "on_vlxStrategyStatusUpdate"})
        EXPECT_EQ(names.count(QLatin1String(each)), kRounds) << each;
    const QList<ViewEvent> events = witness.events();
    for (const ViewEvent &event : events)
        EXPECT_EQ(event.thread == QThread::currentThread(), event.name != u"on_orderLoaded"_qs);
    // The last page had time for the answers of other threads, too.
    const RecordingView &last = pages.at(size_t(lives - 1) % pages.size())->view;
    for (const QString &each : {candlesReply, strategyReply})
        EXPECT_EQ(last.eventNames().count(each), 1) << qPrintable(each);
    center->unReg(&witness);
}

TEST_F(EightThreadsTest, EventsMayComeWhileNoPageIsThere)
{
    pagesAtOnce = 1;
    run();
    EXPECT_GE(lives, kRounds / 6); // a life has two steps
}

} // namespace
