#include "Page.h"
#include "TerminalTest.h"
#include "platform/Wakeup.h"
#include "traffic/Log.h"

#include <gmock/gmock.h>

#include <algorithm>

using namespace sim;
using testing::ElementsAre;
using testing::IsSupersetOf;
using testing::UnorderedElementsAre;
using traffic::Entry;

namespace {

std::vector<Entry> entries()
{
    return traffic::log().after(0, 1000000);
}

/// The entries that belong to the call with that uuid.
std::vector<Entry> entriesOf(const char *uuid)
{
    const std::vector<Entry> all = entries();
    quint64 call = 0;
    for (const Entry &entry : all) {
        if (entry.kind == Entry::Call && entry.uuid == QLatin1String(uuid))
            call = entry.number;
    }
    std::vector<Entry> own;
    for (const Entry &entry : all) {
        if (call != 0 && entry.call == call)
            own.push_back(entry);
    }
    return own;
}

std::vector<std::pair<Entry::Kind, std::string>> kindsAndNames(const std::vector<Entry> &entries)
{
    std::vector<std::pair<Entry::Kind, std::string>> rows;
    rows.reserve(entries.size());
    for (const Entry &entry : entries)
        rows.emplace_back(entry.kind, entry.name.toStdString());
    return rows;
}

using Row = std::pair<Entry::Kind, std::string>;

int countOf(Entry::Kind kind)
{
    int count = 0;
    for (const Entry &entry : entries())
        count += entry.kind == kind ? 1 : 0;
    return count;
}

bool isDelivered(const char *uuid)
{
    bool isDone = false; // the answer may be delivered before the call is done
    bool isDelivered = false;
    for (const Entry &entry : entriesOf(uuid)) {
        isDone = isDone || entry.kind == Entry::CallDone;
        isDelivered = isDelivered || entry.kind == Entry::EventDelivered;
    }
    return isDone && isDelivered;
}

/// Lets await() look again at each entry, also at those of other threads.
class LogWakeup {
public:
    ~LogWakeup() { traffic::log().leave(m_listener); }

private:
    Wakeup m_wakeup{[] {}};
    const int m_listener = traffic::log().listen([this](const Entry &) { m_wakeup.post(); });
};

template <typename Terminal>
class TrafficOf : public Terminal {
protected:
    TrafficOf() { EXPECT_TRUE(gateway.listen(0)); }

    LogWakeup wakeup;
    Gateway gateway{QString(), {}};
};

using TrafficTest = TrafficOf<QuietTerminalTest>;
using TrafficOfAMarketTest = TrafficOf<TerminalTest>;

} // namespace

TEST_F(TrafficTest, PagesComeAndGo)
{
    auto page = std::make_unique<Page>(gateway);
    ASSERT_TRUE(await([] { return countOf(Entry::PageOpened) == 1; }));
    page.reset();
    EXPECT_TRUE(await([] { return countOf(Entry::PageClosed) == 1; }));
}

TEST_F(TrafficTest, ACallItsHostCallsItsReplyAndTheirTimes)
{
    Page page(gateway);
    ASSERT_TRUE(page.awaitOpen());
    page.invoke("Data_getToken_REQ", {QStringLiteral("u1")});
    ASSERT_TRUE(page.awaitFrames(1));
    ASSERT_TRUE(await([] { return isDelivered("u1"); }));
    const std::vector<Entry> own = entriesOf("u1");
    EXPECT_THAT(kindsAndNames(own),
                UnorderedElementsAre(Row(Entry::Call, "Data_getToken_REQ"),
                                     Row(Entry::HostCall, "QvCore::getCurrentToken"),
                                     Row(Entry::Event, "Data_getToken_RES"), Row(Entry::CallDone, "Data_getToken_REQ"),
                                     Row(Entry::EventDelivered, "Data_getToken_RES")));
    EXPECT_EQ(QVariantList{QStringLiteral("u1")}, own[0].args);
    EXPECT_EQ(1, own[0].page);
    EXPECT_LT(0, own[0].size);
    EXPECT_NE(0, own[0].exchangeTime);
    EXPECT_TRUE(own[2].isReply);
    EXPECT_EQ(QStringLiteral("u1"), own[2].uuid);
    EXPECT_EQ(page.args(0).toVariantList(), own[2].args);
    for (const Entry &entry : own) {
        if (entry.kind == Entry::CallDone) {
            EXPECT_TRUE(entry.isHandled);
            EXPECT_EQ(own[0].number, entry.of);
        } else if (entry.kind == Entry::EventDelivered) {
            EXPECT_EQ(own[2].number, entry.of);
            EXPECT_LT(own[2].args[0].toString().size(), entry.size);
            EXPECT_LE(0, entry.duration);
        }
    }
}

TEST_F(TrafficTest, ACallThatNobodyHandles)
{
    Page page(gateway);
    ASSERT_TRUE(page.awaitOpen());
    page.invoke("Data_nothing_REQ", {QStringLiteral("u1")});
    page.invoke("nothing", {});
    ASSERT_TRUE(await([] { return countOf(Entry::CallDone) == 2; }));
    EXPECT_THAT(kindsAndNames(entriesOf("u1")),
                ElementsAre(Row(Entry::Call, "Data_nothing_REQ"), Row(Entry::CallDone, "Data_nothing_REQ")));
    EXPECT_FALSE(entriesOf("u1")[1].isHandled);
}

TEST_F(TrafficTest, CandlesAreFollowedOverTheBusToTheirLaterReply)
{
    Page page(gateway);
    ASSERT_TRUE(page.awaitOpen());
    page.invoke("Data_getKLineData_REQ", {QStringLiteral("\"u\" 1"), QStringLiteral("609801.SH"),
                                          QStringLiteral("20250103"), QString(), QStringLiteral("2")});
    ASSERT_TRUE(await([] { return isDelivered("\"u\" 1"); }));
    const std::vector<Entry> own = entriesOf("\"u\" 1");
    EXPECT_THAT(kindsAndNames(own),
                ElementsAre(Row(Entry::Call, "Data_getKLineData_REQ"), Row(Entry::HostRequest, "KLineRequest"),
                            Row(Entry::CallDone, "Data_getKLineData_REQ"), Row(Entry::HostAnswer, "KLineResponse"),
                            Row(Entry::Event, "Data_getKLineData_RES"),
                            Row(Entry::EventDelivered, "Data_getKLineData_RES")));
    EXPECT_EQ(QStringLiteral("609801.SH"), own[1].args[0].toMap().value(QStringLiteral("Symbol")));
    EXPECT_FALSE(own[1].messageId.isEmpty());
    EXPECT_EQ(own[1].messageId, own[3].messageId);
    EXPECT_EQ(20, own[3].args.size());
    EXPECT_LT(20, own[3].count);
    EXPECT_EQ(own[3].messageId, own[3].args[0].toMap().value(QStringLiteral("clientMsgID")).toString());
}

TEST_F(TrafficTest, AStrategyIsFollowedThroughItsEvents)
{
    Page page(gateway);
    ASSERT_TRUE(page.awaitOpen());
    page.invoke("Vlx_queryStrategyStatus_REQ", {QStringLiteral("u1"), QStringLiteral("S1"), QString()});
    ASSERT_TRUE(await([] { return isDelivered("u1"); }));
    EXPECT_THAT(kindsAndNames(entriesOf("u1")),
                IsSupersetOf({Row(Entry::HostEvent, "VELOX_TRANS_MSG_IN"), Row(Entry::HostEvent, "VELOX_TRANS_MSG_OUT"),
                              Row(Entry::Event, "Vlx_queryStrategyStatus_RES")}));
}

TEST_F(TrafficTest, AnOrderIsFollowedToTheEventsThatItCaused)
{
    Page page(gateway);
    ASSERT_TRUE(page.awaitOpen());
    page.invoke("Trade_insertOrder_REQ",
                {QStringLiteral("u1"), QStringLiteral("880010001"), QStringLiteral("609801.SH"), QString(),
                 QStringLiteral("Buy"), QStringLiteral("Limit"), QStringLiteral("18.00"), QStringLiteral("100"),
                 QString()});
    ASSERT_TRUE(await([] { return isDelivered("u1"); }));
    EXPECT_THAT(kindsAndNames(entriesOf("u1")),
                IsSupersetOf({Row(Entry::HostCall, "VarnelTradeLogic::orders"), Row(Entry::HostEvent, "OrderEntered"),
                              Row(Entry::Event, "Trade_insertOrder_RES")}));
}

TEST_F(TrafficOfAMarketTest, QuotesAndTheTicksThatPagesGet)
{
    Page page(gateway);
    ASSERT_TRUE(page.awaitOpen());
    page.invoke("Sub_subscribe_REQ", {QStringLiteral("u1"), QStringLiteral("609801.SH")});
    const auto isLogged = [](Entry::Kind kind, const char *name) {
        const std::vector<Entry> all = entries();
        return std::any_of(all.begin(), all.end(), [&](const Entry &entry) {
            return entry.kind == kind && entry.name == QLatin1String(name) && !entry.isReply;
        });
    };
    EXPECT_TRUE(await([&] { return isLogged(Entry::EventDelivered, "on_tickUpdate"); }));
    EXPECT_TRUE(isLogged(Entry::Quote, "609801.SH"));
    EXPECT_TRUE(isLogged(Entry::Event, "on_tickUpdate"));
}
