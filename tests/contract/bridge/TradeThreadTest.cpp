#include "bridge/TradeThread.h"

#include "HostAnswers.h"
#include "HostTest.h"
#include "LogRecorder.h"
#include "LogText.h"
#include "Received.h"
#include "Replies.h"
#include "ThreadGate.h"
#include "common/HeaderTexts.h"

#include "Tessar_Fields.h"

#include <QMetaMethod>

#include <memory>

using testing::_;
using testing::ElementsAre;
using testing::InSequence;
using testing::IsEmpty;
using testing::Return;

namespace {

const struct {
    const char *method;
    const char *event;
    int needed;
} calls[] = {
    {"Trade_insertOrder_REQ", "Trade_insertOrder_RES", 9},
    {"Trade_insertOrderList_REQ", "Trade_insertOrderList_RES", 4},
    {"Trade_reqCancelOrder_REQ", "Trade_reqCancelOrder_RES", 2},
};

const QVariantList wholeOrder{u"u1"_qs,    u"f1"_qs,  u"S"_qs,   u"SSE"_qs, u"buy"_qs,
                              u"limit"_qs, u"1.5"_qs, u"100"_qs, u"tag"_qs};

QString invokeLine(const QString &method)
{
    return logText("TradeThread::onInvokeMethod", method);
}

/// The trade dispatcher calls no host operation when it starts.
class TradeThreadTest : public HostTest {
protected:
    bool call(const char *method, const QVariantList &args)
    {
        return dispatcher->onInvokeMethod(1, 2, QString::fromUtf8(method), args);
    }

    QStringList received() const { return receivedBy(view); }

    QStringList debugLines() const
    {
        QStringList messages;
        const QList<LogLine> lines = log.linesOfType(QtDebugMsg);
        for (const LogLine &line : lines) {
            EXPECT_EQ(line.category, u"varnel.websdk"_qs);
            messages << line.message;
        }
        return messages;
    }

    /// The host refuses every order that reaches it, with this reason.
    void expectRefusedOrders(int count, const QString &reason)
    {
        const QList<VarnelLogic::ResponseInfo> errors{{1, reason}};
        EXPECT_CALL(host, VarnelTradeLogic_orders(_, _, 319, _, true))
            .Times(count)
            .WillRepeatedly(testing::DoAll(testing::SetArgReferee<3>(errors), Return(-1)));
    }

    LogRecorder log;
    RecordingView view;
    TradeThread *dispatcher = new TradeThread(&view); // goes with the view
};

TEST_F(TradeThreadTest, OrderReadsNineTextsAndIsAnsweredBeforeTheCallReturns)
{
    const InSequence order;
    expectAccounts(host, u"1"_qs, {{u"1"_qs, u"name"_qs, u"t1"_qs}});
    EXPECT_CALL(host, CBusinessDataBase_getClientOrderID()).WillOnce(Return(u"c1"_qs));
    EXPECT_CALL(host, VarnelTradeLogic_orders(_, _, 319, _, true))
        .WillOnce(testing::WithArg<0>([](const OrderRequestList &list) {
            EXPECT_EQ(list.Account(), u"t1"_qs);
            EXPECT_EQ(list.Tag(), u"8"_qs);
            EXPECT_EQ(list.Orders().size(), 1);
            const VarnelLogic::OrderRequest line = list.Orders().value(0);
            EXPECT_EQ(line.symbol, u"2"_qs);
            EXPECT_EQ(line.exchange, u"true"_qs);
            EXPECT_EQ(line.side, QString());
            EXPECT_EQ(line.priceType, u"5"_qs);
            EXPECT_EQ(line.price, u"6.5"_qs);
            EXPECT_EQ(line.orderQty, 700);
            EXPECT_EQ(line.orderTag, u"8"_qs);
            return 0;
        }));
    EXPECT_CALL(host, VarnelTradeLogic_transOrderRsp(_, _))
        .WillOnce(Return(QList<QVariantMap>{
            {{Tessar_Fields::System::requestExeStatus, u"0"_qs}, {Tessar_Fields::Security::orderID, u"1001"_qs}}}));
    EXPECT_TRUE(call("Trade_insertOrder_REQ", {7, 1, 2, true, QVariantMap(), u"5"_qs, 6.5, 700, 8, u"surplus"_qs}));
    EXPECT_THAT(received(),
                ElementsAre(u"Trade_insertOrder_RES"_qs,
                            successReply(uR"({"exchange":"true","fundAccount":"1","orderID":"1001","orderSide":"",)"
                                         uR"("price":"6.5","priceType":"5","qty":"700","symbol":"2"})"_qs,
                                         u"7"_qs)));
    EXPECT_EQ(view.events().first().thread, QThread::currentThread());
}

TEST_F(TradeThreadTest, OrderListReadsThreeTextsAndIgnoresTheRest)
{
    const InSequence order;
    expectAccounts(host, u"f1"_qs, {{u"f1"_qs, u"name"_qs, u"t1"_qs}});
    EXPECT_CALL(host, CBusinessDataBase_getClientOrderID()).WillOnce(Return(u"c1"_qs));
    EXPECT_CALL(host, VarnelTradeLogic_orders(_, _, 319, _, true))
        .WillOnce(testing::WithArg<0>([](const OrderRequestList &list) {
            EXPECT_EQ(list.Tag(), u"2"_qs);
            EXPECT_EQ(list.Orders().size(), 1);
            EXPECT_EQ(list.Orders().value(0).symbol, u"S"_qs);
            return 0;
        }));
    EXPECT_CALL(host, VarnelTradeLogic_transOrderRsp(_, _)).WillOnce(Return(QList<QVariantMap>()));
    EXPECT_TRUE(call("Trade_insertOrderList_REQ", {u"u1"_qs, u"f1"_qs, 2, uR"([{"symbol":"S"}])"_qs, u"five"_qs, 6}));
    EXPECT_THAT(received(), ElementsAre(u"Trade_insertOrderList_RES"_qs, successReply(u"[]"_qs)));
}

TEST_F(TradeThreadTest, OrderListThatIsNoTextIsNoJson)
{
    for (const QVariant &orders : {QVariant(), QVariant(QVariantList{QVariantMap()}), QVariant(7)}) {
        view.clear();
        expectAccounts(host, u"f1"_qs, {{u"f1"_qs, u"name"_qs, u"t1"_qs}});
        EXPECT_TRUE(call("Trade_insertOrderList_REQ", {u"u1"_qs, u"f1"_qs, u"tag"_qs, orders}));
        EXPECT_THAT(received(), ElementsAre(u"Trade_insertOrderList_RES"_qs, QString()));
        testing::Mock::VerifyAndClearExpectations(&host);
    }
}

TEST_F(TradeThreadTest, CancelReadsACommaListWithItsEmptyParts)
{
    const struct {
        QVariant sent;
        QStringList ids;
    } lists[] = {{u"1001,1002"_qs, {u"1001"_qs, u"1002"_qs}},
                 {u"1001,, 1002"_qs, {u"1001"_qs, QString(), u" 1002"_qs}},
                 {QString(), {QString()}},
                 {QVariant(), {QString()}},
                 {1001, {u"1001"_qs}},
                 {QVariantList{u"1"_qs, u"2"_qs}, {QString()}}};
    for (const auto &list : lists) {
        const InSequence order;
        for (const QString &id : list.ids)
            EXPECT_CALL(host, BusinessDataInterface_GetOrderDetailByOrderID(id)).WillOnce(Return(QVariantMap()));
        EXPECT_CALL(host, VarnelTradeLogicFactory_SendRequestSync(CancelOrdersTradeRequest, _, u"WEB"_qs, _))
            .WillOnce(testing::WithArg<1>([&](const QVariant &request) {
                EXPECT_EQ(request.value<QList<QVariantMap>>().size(), list.ids.size());
                return 0;
            }));
        view.clear();
        EXPECT_TRUE(call("Trade_reqCancelOrder_REQ", {u"u1"_qs, list.sent, u"surplus"_qs}));
        EXPECT_THAT(received(), ElementsAre(u"Trade_reqCancelOrder_RES"_qs, successReply(u"[]"_qs)));
        testing::Mock::VerifyAndClearExpectations(&host);
    }
}

TEST_F(TradeThreadTest, TooFewArgumentsAnswerWithTheEmptyTextAndPlaceNothing)
{
    for (const auto &known : calls) {
        QVariantList args;
        for (int count = 0; count < known.needed; ++count, args.append(u"1"_qs)) {
            view.clear();
            log.clear();
            EXPECT_TRUE(call(known.method, args));
            EXPECT_THAT(received(), ElementsAre(QString::fromLatin1(known.event), QString()))
                << known.method << " with " << count;
            EXPECT_THAT(debugLines(),
                        ElementsAre(logText(("TradeThread::" + std::string(known.method)).c_str(), QString()),
                                    invokeLine(QString::fromLatin1(known.method))));
        }
    }
}

TEST_F(TradeThreadTest, ReplyIsLoggedByTheHandlerAndTheCallAfterIt)
{
    expectAccounts(host, u"f1"_qs, {});
    log.clear();
    EXPECT_TRUE(call("Trade_insertOrder_REQ", wholeOrder));
    const QString reply = refusal(u"资产账号获取错误"_qs);
    EXPECT_THAT(received(), ElementsAre(u"Trade_insertOrder_RES"_qs, reply));
    EXPECT_THAT(debugLines(), ElementsAre(logText("TradeThread::Trade_insertOrder_REQ", reply),
                                          invokeLine(u"Trade_insertOrder_REQ"_qs)));
}

TEST_F(TradeThreadTest, ReplyIsLoggedBeforeItIsSent)
{
    QStringList linesWhenSent;
    view.whileBroadcasting([&] { linesWhenSent = debugLines(); });
    call("Trade_insertOrder_REQ", {});
    EXPECT_THAT(linesWhenSent, ElementsAre(logText("TradeThread::Trade_insertOrder_REQ", QString())));
}

TEST_F(TradeThreadTest, EachCallPlacesItsOrderOnceAlsoWithAUuidThatCameBefore)
{
    constexpr int times = 3;
    EXPECT_CALL(host, VarnelBusinessDataInterface_GetAccountInfoListFromFund(u"f1"_qs, true))
        .Times(times)
        .WillRepeatedly(Return(QList<tagUserAccountInfo>{{u"f1"_qs, u"name"_qs, u"t1"_qs}}));
    EXPECT_CALL(host, CBusinessDataBase_getClientOrderID()).Times(times).WillRepeatedly(Return(u"c"_qs));
    expectRefusedOrders(times, u"停牌"_qs);
    for (int i = 0; i < times; ++i)
        EXPECT_TRUE(call("Trade_insertOrder_REQ", wholeOrder));
    EXPECT_EQ(view.eventsAfterDraining().size(), times);
}

TEST_F(TradeThreadTest, UnknownNamesAreRefusedAndLogged)
{
    for (const char *name :
         {"Trade_unknown_REQ", "", "trade_insertOrder_REQ", "Trade_insertOrder_RES", "Trade_insertOrder_REQ()",
          "onInvokeMethod", "deleteLater", "destroyed", "objectNameChanged", "Data_getToken_REQ", "数据"}) {
        log.clear();
        EXPECT_FALSE(call(name, wholeOrder)) << name;
        EXPECT_THAT(debugLines(), ElementsAre(invokeLine(QString::fromUtf8(name))));
    }
    for (const QString &name : textsOfTheHeader(u"Reserved"_qs))
        EXPECT_FALSE(dispatcher->onInvokeMethod(1, 2, name, wholeOrder)) << qPrintable(name);
    EXPECT_THAT(view.eventsAfterDraining(), IsEmpty());
}

TEST_F(TradeThreadTest, MetaMethodsHaveTheirFixedOrder)
{
    const QMetaObject &meta = TradeThread::staticMetaObject;
    EXPECT_STREQ(meta.className(), "TradeThread");
    EXPECT_STREQ(meta.superClass()->className(), "QObject");
    QStringList signatures;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        EXPECT_EQ(method.methodType(), QMetaMethod::Method);
        const bool entry = i == meta.methodOffset();
        EXPECT_EQ(method.access(), entry ? QMetaMethod::Public : QMetaMethod::Private);
        EXPECT_EQ(method.returnType(), int(entry ? QMetaType::Bool : QMetaType::Void));
        signatures << QString::fromLatin1(method.methodSignature());
    }
    EXPECT_THAT(signatures,
                ElementsAre(u"onInvokeMethod(int,int,QString,QVariantList)"_qs,
                            u"Trade_reqCancelOrder_REQ(QVariantList)"_qs, u"Trade_insertOrder_REQ(QVariantList)"_qs,
                            u"Trade_insertOrderList_REQ(QVariantList)"_qs));
}

TEST_F(TradeThreadTest, EveryTradeCallOfTheProtocolIsHandled)
{
    QStringList protocol = textsOfTheHeader(u"Method"_qs).filter(QRegularExpression(u"^Trade_.*_REQ$"_qs));
    EXPECT_EQ(protocol.size(), 3);
    for (const auto &known : calls)
        EXPECT_TRUE(protocol.removeOne(QString::fromLatin1(known.method))) << known.method;
    EXPECT_THAT(protocol, IsEmpty());
}

TEST_F(TradeThreadTest, EntryPointCanBeInvokedByName)
{
    expectAccounts(host, u"f1"_qs, {});
    bool known = false;
    EXPECT_TRUE(QMetaObject::invokeMethod(dispatcher, "onInvokeMethod", Q_RETURN_ARG(bool, known), Q_ARG(int, 0),
                                          Q_ARG(int, 0), Q_ARG(QString, u"Trade_insertOrder_REQ"_qs),
                                          Q_ARG(QVariantList, wholeOrder)));
    EXPECT_TRUE(known);
    EXPECT_EQ(view.eventNames(), QStringList{u"Trade_insertOrder_RES"_qs});
}

TEST_F(TradeThreadTest, HostileTextsComeBackInTheReply)
{
    const QString hostile = u"\"\\\n\u0000𝄞</script>%1"_qs;
    EXPECT_CALL(host, VarnelBusinessDataInterface_GetAccountInfoListFromFund(QString(1 << 20, u'x'), true))
        .WillOnce(Return(QList<tagUserAccountInfo>()));
    QVariantList args = wholeOrder;
    args[0] = hostile;
    args[1] = QString(1 << 20, u'x');
    EXPECT_TRUE(call("Trade_insertOrder_REQ", args));
    EXPECT_EQ(received().value(1), refusal(u"资产账号获取错误"_qs, uR"(\"\\\n\u0000𝄞</script>%1)"_qs));

    EXPECT_CALL(host, VarnelBusinessDataInterface_GetAccountInfoListFromFund(QString(), true))
        .WillOnce(Return(QList<tagUserAccountInfo>()));
    view.clear();
    args[0] = QChar(0xD834); // half of a pair: JSON can write it only so
    args[1] = QVariantList{1, 2};
    EXPECT_TRUE(call("Trade_insertOrder_REQ", args));
    EXPECT_EQ(received().value(1), refusal(u"资产账号获取错误"_qs, uR"(\ud834)"_qs));
}

TEST_F(TradeThreadTest, DiesWithItsViewWithoutALogLine)
{
    EXPECT_EQ(dispatcher->parent(), &view);
    EXPECT_EQ(dispatcher->thread(), QThread::currentThread());
    EXPECT_EQ(log.linesWith(u"Cannot move objects with a parent"_qs).size(), 1);
    log.clear();
    delete dispatcher;
    EXPECT_THAT(log.lines(), IsEmpty());
}

class ParentlessTradeThreadTest : public HostTest {};

TEST_F(ParentlessTradeThreadTest, NeverAnswersPlacesOrLogsAReply)
{
    LogRecorder log;
    ThreadGate gate;
    ThreadLatch done;
    auto dispatcher = std::make_unique<TradeThread>(nullptr);
    EXPECT_NE(dispatcher->thread(), QThread::currentThread());
    EXPECT_EQ(dispatcher->thread()->objectName(), u"TradeThread"_qs);
    gate.hold(dispatcher->thread());
    for (const auto &known : calls) {
        EXPECT_TRUE(dispatcher->onInvokeMethod(1, 2, QString::fromLatin1(known.method), wholeOrder));
        EXPECT_TRUE(dispatcher->onInvokeMethod(1, 2, QString::fromLatin1(known.method), {}));
    }
    EXPECT_FALSE(dispatcher->onInvokeMethod(1, 2, u"Trade_unknown_REQ"_qs, wholeOrder));
    QMetaObject::invokeMethod(
        dispatcher.get(), [&done] { done.open(); }, Qt::QueuedConnection); // behind all of them
    gate.open();
    done.wait();
    EXPECT_EQ(log.linesWith(u"TradeThread::onInvokeMethod"_qs).size(), 7);
    EXPECT_EQ(log.linesOfType(QtDebugMsg).size(), 7);
    EXPECT_THAT(RecordingView::eventsOfAllViews(), IsEmpty());
}

} // namespace
