// An exception of a host operation passes through to the host's own caller. The library throws nothing of its own: see
// HostileCallsTest.cpp.
#include "bridge/DataThread.h"
#include "bridge/TradeThread.h"
#include "msgcenter/WebMsgCenter.h"

#include "HostAnswers.h"
#include "HostQuotes.h"
#include "HostTest.h"
#include "LogRecorder.h"
#include "Received.h"
#include "Replies.h"

#include <stdexcept>

using testing::_;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Return;

namespace {

class HostExceptionsTest : public HostTest {
protected:
    /// A type of its own, so that no other exception is mistaken for it.
    struct HostError : std::runtime_error {
        HostError() : std::runtime_error("the host's") {}
    };

    HostExceptionsTest()
    {
        expectStart();
        data = new DataThread(&view);
        trade = new TradeThread(&view);
        center = WebMsgCenter::instance();
        center->reg(&view);
    }
    ~HostExceptionsTest() override { center->unReg(&view); }

    bool ask(const QString &method, const QVariantList &args) const { return data->onInvokeMethod(1, 2, method, args); }

    LogRecorder log;
    RecordingView view;
    DataThread *data = nullptr; // both go with the view
    TradeThread *trade = nullptr;
    WebMsgCenter *center = nullptr;
};

TEST_F(HostExceptionsTest, PassThroughACallThatIsNotAnsweredThen)
{
    EXPECT_CALL(host, QvCore_getCurrentToken()).WillOnce(testing::Throw(HostError())).WillOnce(Return(u"T"_qs));
    EXPECT_THROW(ask(u"Data_getToken_REQ"_qs, {u"u1"_qs}), HostError);
    EXPECT_THAT(receivedBy(view), IsEmpty());
    EXPECT_TRUE(ask(u"Data_getToken_REQ"_qs, {u"u2"_qs}));
    EXPECT_THAT(receivedBy(view), ElementsAre(u"Data_getToken_RES"_qs, successReply(u"\"T\""_qs, u"u2"_qs)));
}

TEST_F(HostExceptionsTest, PassThroughAnOrderThatIsNotAnsweredThen)
{
    expectAccounts(host, u"f1"_qs, {{u"f1"_qs, u"name"_qs, u"t1"_qs}});
    EXPECT_CALL(host, CBusinessDataBase_getClientOrderID()).WillOnce(Return(u"c1"_qs));
    EXPECT_CALL(host, VarnelTradeLogic_orders(_, _, 319, _, true)).WillOnce(testing::Throw(HostError()));
    EXPECT_THROW(trade->onInvokeMethod(1, 2, u"Trade_insertOrderList_REQ"_qs,
                                       {u"u1"_qs, u"f1"_qs, u"tag"_qs, uR"([{"symbol":"S"}])"_qs}),
                 HostError);
    EXPECT_THAT(receivedBy(view), IsEmpty());
}

TEST_F(HostExceptionsTest, LeaveNoSubscription)
{
    EXPECT_CALL(host, CommonQuotaHandler_SubscribeQuota(_, true, 0))
        .WillOnce(testing::Throw(HostError()))
        .WillOnce(Return(0));
    EXPECT_THROW(center->subscribe(&view, u"u1"_qs, {u"S"_qs}), HostError);
    emitTick(u"S"_qs, {});
    EXPECT_THAT(view.eventsAfterDraining(), IsEmpty());
    center->subscribe(&view, u"u2"_qs, {u"S"_qs});
    emitTick(u"S"_qs, {});
    EXPECT_THAT(view.eventNames(), ElementsAre(u"Sub_subscribe_RES"_qs, u"on_tickUpdate"_qs));
}

TEST_F(HostExceptionsTest, OfABroadcastLeaveNothingLocked)
{
    EXPECT_CALL(host, CommonQuotaHandler_SubscribeQuota(_, true, 0)).WillOnce(Return(0));
    center->subscribe(&view, u"u1"_qs, {u"S"_qs});
    view.whileBroadcasting([] { throw HostError(); });
    EXPECT_THROW(emitTick(u"S"_qs, {}), HostError);
    view.whileBroadcasting(nullptr);
    view.clear();
    emitTick(u"S"_qs, {});
    EXPECT_THAT(view.eventNames(), ElementsAre(u"on_tickUpdate"_qs));
}

} // namespace
