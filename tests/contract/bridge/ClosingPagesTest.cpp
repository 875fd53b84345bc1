// The host may spin the event loop while it answers the library, for example to ask the user a question. The user may
// close the page meanwhile, which deletes its view and dispatchers.
#include "bridge/DataThread.h"
#include "bridge/TradeThread.h"

#include "HostAnswers.h"
#include "HostTest.h"
#include "LogRecorder.h"
#include "Received.h"
#include "Replies.h"

#include <QEventLoop>
#include <QPointer>
#include <QTimer>

#include <functional>
#include <memory>

using testing::_;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Return;

namespace {

class ClosingPagesTest : public HostTest {
protected:
    ClosingPagesTest()
    {
        expectStart();
        data = new DataThread(view.get());
        trade = new TradeThread(view.get());
    }

    /// Handles other events, as a modal question does, and closes the page in one of them.
    void closePageInAnEventLoop()
    {
        QEventLoop question;
        QTimer::singleShot(0, &question, [&] {
            view.reset();
            question.quit();
        });
        question.exec();
    }

    void expectOneOrder(const std::function<void()> &meanwhile)
    {
        expectAccounts(host, u"f1"_qs, {{u"f1"_qs, u"name"_qs, u"t1"_qs}});
        EXPECT_CALL(host, CBusinessDataBase_getClientOrderID()).WillOnce(Return(u"c1"_qs));
        EXPECT_CALL(host, VarnelTradeLogic_orders(_, _, 319, _, true)).WillOnce([meanwhile] {
            meanwhile();
            return 0;
        });
        EXPECT_CALL(host, VarnelTradeLogic_transOrderRsp(_, _)).WillOnce(Return(QList<QVariantMap>{{}}));
    }

    bool placeOrder() const
    {
        return trade->onInvokeMethod(
            1, 2, u"Trade_insertOrder_REQ"_qs,
            {u"u1"_qs, u"f1"_qs, u"S"_qs, u"SSE"_qs, u"buy"_qs, u"limit"_qs, u"1.5"_qs, u"100"_qs, u"tag"_qs});
    }

    bool ask(const char *method, const QVariantList &args = {u"u1"_qs}) const
    {
        return data->onInvokeMethod(1, 2, QString::fromUtf8(method), args);
    }

    LogRecorder log;
    std::unique_ptr<RecordingView> view = std::make_unique<RecordingView>();
    QPointer<DataThread> data; // both go with the view
    QPointer<TradeThread> trade;
};

TEST_F(ClosingPagesTest, OrderStaysPlacedAndIsNotAnswered)
{
    expectOneOrder([this] { closePageInAnEventLoop(); });
    EXPECT_TRUE(placeOrder());
    EXPECT_FALSE(trade);
    EXPECT_THAT(RecordingView::eventsOfAllViews(), IsEmpty());
    // The outcome is logged although nobody gets it.
    EXPECT_EQ(log.linesWith(u"TradeThread::Trade_insertOrder_REQ"_qs).size(), 1);
    EXPECT_EQ(log.linesWith(u"TradeThread::onInvokeMethod"_qs).size(), 1);
}

TEST_F(ClosingPagesTest, OrderIsNotAnsweredWithoutItsDispatcher)
{
    expectOneOrder([this] { delete trade; });
    EXPECT_TRUE(placeOrder());
    EXPECT_THAT(view->eventsAfterDraining(), IsEmpty());
}

TEST_F(ClosingPagesTest, OrderListStaysPlacedAndIsNotAnswered)
{
    expectOneOrder([this] { closePageInAnEventLoop(); });
    EXPECT_TRUE(trade->onInvokeMethod(1, 2, u"Trade_insertOrderList_REQ"_qs,
                                      {u"u1"_qs, u"f1"_qs, u"tag"_qs, uR"([{"symbol":"S"}])"_qs}));
    EXPECT_THAT(RecordingView::eventsOfAllViews(), IsEmpty());
}

TEST_F(ClosingPagesTest, CancelIsNotAnswered)
{
    EXPECT_CALL(host, BusinessDataInterface_GetOrderDetailByOrderID(u"1001"_qs)).WillOnce(Return(QVariantMap()));
    EXPECT_CALL(host, VarnelTradeLogicFactory_SendRequestSync(_, _, _, _)).WillOnce([this] {
        closePageInAnEventLoop();
        return 0;
    });
    EXPECT_TRUE(trade->onInvokeMethod(1, 2, u"Trade_reqCancelOrder_REQ"_qs, {u"u1"_qs, u"1001"_qs}));
    EXPECT_THAT(RecordingView::eventsOfAllViews(), IsEmpty());
}

TEST_F(ClosingPagesTest, MenuIsNotAnswered)
{
    EXPECT_CALL(host, BaseBusinessDataInterface_OpenMenuTabByMenuID(_)).WillOnce([this] { closePageInAnEventLoop(); });
    EXPECT_TRUE(ask("Data_openPermissionMenu_REQ"));
    EXPECT_FALSE(data);
    EXPECT_THAT(RecordingView::eventsOfAllViews(), IsEmpty());
}

TEST_F(ClosingPagesTest, QuoteIsNotAnswered)
{
    EXPECT_CALL(host, CommonQuotaHandler_GetQuotaSnapshot(u"S"_qs, 0)).WillOnce([this] {
        closePageInAnEventLoop();
        return QVariantMap();
    });
    EXPECT_TRUE(ask("Data_getCurrentTick_REQ", {u"u1"_qs, u"S"_qs}));
    EXPECT_THAT(RecordingView::eventsOfAllViews(), IsEmpty());
}

TEST_F(ClosingPagesTest, CallIsNotAnsweredWithoutItsDispatcher)
{
    EXPECT_CALL(host, QvCore_getCurrentToken()).WillOnce([this] {
        delete data;
        return u"T"_qs;
    });
    EXPECT_TRUE(ask("Data_getToken_REQ"));
    EXPECT_THAT(view->eventsAfterDraining(), IsEmpty());
}

TEST_F(ClosingPagesTest, CandlesAreRequestedAndNotAnswered)
{
    EXPECT_CALL(host, QvPresenterClass_sendRequest_Async(_)).WillOnce([this] {
        closePageInAnEventLoop();
        return 0;
    });
    EXPECT_TRUE(ask("Data_getKLineData_REQ", {u"u1"_qs, u"S"_qs, u"a"_qs, u"b"_qs, u"1"_qs}));
    EXPECT_FALSE(data);
    EXPECT_THAT(RecordingView::eventsOfAllViews(), IsEmpty());
}

TEST_F(ClosingPagesTest, AnswerGoesToTheViewThatWasSetMeanwhile)
{
    RecordingView successor;
    EXPECT_CALL(host, QvCore_getCurrentToken()).WillOnce([&] {
        data->setView(&successor);
        return u"T"_qs;
    });
    EXPECT_TRUE(ask("Data_getToken_REQ"));
    EXPECT_THAT(view->eventsAfterDraining(), IsEmpty());
    EXPECT_THAT(receivedBy(successor), ElementsAre(u"Data_getToken_RES"_qs, successReply(u"\"T\""_qs)));
}

TEST_F(ClosingPagesTest, NothingIsAnsweredWhenTheViewWasTakenAwayMeanwhile)
{
    EXPECT_CALL(host, QvCore_getCurrentToken()).WillOnce([this] {
        data->setView(nullptr);
        return u"T"_qs;
    });
    EXPECT_TRUE(ask("Data_getToken_REQ"));
    EXPECT_THAT(view->eventsAfterDraining(), IsEmpty());
}

} // namespace
