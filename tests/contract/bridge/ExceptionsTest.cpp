// The library throws nothing of its own, whatever pages and bus send. An exception of a host operation passes through
// to the host's own caller.
#include "bridge/DataThread.h"
#include "bridge/TradeThread.h"
#include "msgcenter/WebMsgCenter.h"

#include "HostAnswers.h"
#include "HostQuotes.h"
#include "HostTest.h"
#include "LogRecorder.h"
#include "OwnAccount.h"
#include "Received.h"
#include "Replies.h"

#include <QMetaMethod>

#include <cmath>
#include <limits>
#include <memory>
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

/// Values that a page or the bus may send instead of the expected ones.
QVariantList hostileValues()
{
    QVariantList nested{1};
    for (int i = 0; i < 200; ++i)
        nested = QVariantList{QVariant(nested)};
    const QString surrogate(QChar(0xD800));
    return {QVariant(),
            QString(),
            u""_qs,
            QString(1 << 16, u'x'),
            QString(1 << 8, u','),
            u"1e999"_qs,
            u"[[[{\"a\":"_qs,
            u"{\"compositeConditions\":[null,1,{}]}"_qs,
            surrogate,
            QString(QChar(0)),
            true,
            std::numeric_limits<qlonglong>::max(),
            std::numeric_limits<qulonglong>::max(),
            std::nan(""),
            -std::numeric_limits<double>::infinity(),
            QByteArray("\xff\xfe\x00", 3),
            QVariantMap{{u"a"_qs, QVariant()}, {surrogate, nested}},
            QVariantList{QVariant(), 1, u"x"_qs, QVariantMap()},
            QVariant(nested),
            QStringList{u"a"_qs, QString()},
            QVariant::fromValue<QObject *>(nullptr),
            QVariant::fromValue<VarnelCefView *>(nullptr)};
}

/// The host answers every call, mostly with an empty answer.
class HostileValuesTest : public testing::Test {
protected:
    HostileValuesTest()
    {
        ON_CALL(host, VarnelBusinessDataInterface_GetAccountInfoListFromFund)
            .WillByDefault(Return(QList<tagUserAccountInfo>{{u"f1"_qs, u"name"_qs, u"t1"_qs}}));
        ON_CALL(host, VarnelBusinessDataInterface_GetAccountInfoListFromTrade)
            .WillByDefault(Return(QList<tagUserAccountInfo>{{u"f1"_qs, u"name"_qs, u"t1"_qs}}));
        ON_CALL(host, VarnelTradeLogic_transOrderRsp).WillByDefault(Return(QList<QVariantMap>{{}}));
        ON_CALL(host, VarnelBusinessDataInterface_GetOrloEventMsgIdByStr).WillByDefault(Return(int(strategyEvent)));
        ON_CALL(host, CBusinessDataBase_GetLoginAccount).WillByDefault(Return(account.name));
        data = new DataThread(&view);
        trade = new TradeThread(&view);
        center = WebMsgCenter::instance();
        center->reg(&view);
    }

    static QStringList handlersOf(const QMetaObject &meta)
    {
        QStringList names;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            const QString name = QString::fromLatin1(meta.method(i).name());
            if (name.endsWith(u"_REQ"_qs))
                names << name;
        }
        return names;
    }

    template <typename Dispatcher>
    void callAll(Dispatcher *dispatcher)
    {
        const QVariantList values = hostileValues();
        const QStringList methods = handlersOf(Dispatcher::staticMetaObject);
        for (const QString &method : methods) {
            for (const QVariant &value : values) {
                for (const int count : {0, 1, 2, 4, 10}) { // none, too few for some, surplus
                    const QVariantList args = QVector<QVariant>(count, value).toList();
                    view.clear();
                    EXPECT_NO_THROW(EXPECT_TRUE(dispatcher->onInvokeMethod(1, 2, method, args)))
                        << qPrintable(method) << ' ' << value.typeName();
                    // Candles are answered later.
                    EXPECT_EQ(view.events().size(), method == u"Data_getKLineData_REQ"_qs ? 0 : 1)
                        << qPrintable(method) << ' ' << value.typeName();
                }
            }
        }
    }

    static constexpr int strategyEvent = 0x5A5A5;
    const OwnAccount account;
    testing::NiceMock<HostMock> host;
    LogRecorder log;
    RecordingView view;
    DataThread *data = nullptr; // both go with the view
    TradeThread *trade = nullptr;
    WebMsgCenter *center = nullptr;
};

TEST_F(HostileValuesTest, ThrowNothingInDataCalls)
{
    callAll(data);
}

TEST_F(HostileValuesTest, ThrowNothingInTradeCalls)
{
    callAll(trade);
}

TEST_F(HostileValuesTest, ThrowNothingInStrategyCalls)
{
    const QStringList methods = handlersOf(WebMsgCenter::staticMetaObject);
    ASSERT_EQ(methods.size(), 5);
    const QVariantList values = hostileValues();
    for (const QString &method : methods) {
        for (const QVariant &value : values) {
            for (const int count : {0, 2, 3, 5, 7}) {
                const QVariantList args = QVector<QVariant>(count, value).toList();
                EXPECT_NO_THROW(QMetaObject::invokeMethod(center, method.toLatin1().constData(),
                                                          Q_ARG(QVariantList, args), Q_ARG(VarnelCefView *, &view)))
                    << qPrintable(method) << ' ' << value.typeName();
            }
        }
    }
    EXPECT_THAT(view.eventsAfterDraining(), IsEmpty());
}

TEST_F(HostileValuesTest, ThrowNothingInSubscriptions)
{
    const QVariantList values = hostileValues();
    for (const QVariant &value : values) {
        const QString text = value.toString();
        EXPECT_NO_THROW(center->subscribe(&view, text, {text, QString(), text}));
        EXPECT_NO_THROW(emitTick(text, {{text, value}}));
        EXPECT_NO_THROW(center->unsubscribe(&view, text, {text}));
        EXPECT_NO_THROW(center->unsubscribeAll(&view, text));
        view.clear();
    }
}

TEST_F(HostileValuesTest, ThrowNothingInWhatTheBusDelivers)
{
    const QVariantList values = hostileValues();
    for (const int id : {0x300A0, 0x30003, 0x30005, 0x30004, 0x30006, 0x31002, 0x30001, int(strategyEvent)}) {
        for (const QVariant &value : values) {
            const QString text = value.toString();
            EXPECT_NO_THROW(HostBus::deliverEvent(text, id, value));
            EXPECT_NO_THROW(center->ProcQuotationMsg(text, value, value));
            EXPECT_NO_THROW(center->ProcQuotationMsg(text, u"KLineResponse"_qs, value));
            EXPECT_NO_THROW(center->ProcAsyncCallBack(id, text, value, value));
            EXPECT_NO_THROW(HostBus::deliverEvent(text, value, value));
        }
    }
    EXPECT_NO_THROW(view.eventsAfterDraining());
}

} // namespace
