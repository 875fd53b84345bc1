// Whatever a page sends in a call, the library answers as for any other call, throws nothing and disturbs no other
// page.
#include "bridge/DataThread.h"
#include "bridge/TradeThread.h"
#include "msgcenter/WebMsgCenter.h"

#include "HostMock.h"
#include "HostQuotes.h"
#include "HostileValues.h"
#include "LogRecorder.h"
#include "OwnAccount.h"
#include "Received.h"
#include "Replies.h"

#include "HostBus.h"
#include "Tessar_Fields.h"
#include "Varnel_Fields.h"

#include <QMetaMethod>

#include <algorithm>
#include <iterator>
#include <vector>

using testing::_;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Return;

namespace {

enum class Answered {
    AtOnce,
    WithCandles, ///< when the bus delivers them
    ByPlatform,  ///< when the strategy platform answers
    Never,
};

/// A call as a page makes it.
struct Call {
    const char *method;
    QVariantList good; ///< the arguments after the uuid, such that the host is asked
    Answered answered = Answered::AtOnce;
};

void PrintTo(const Call &call, std::ostream *out)
{
    *out << call.method;
}

const Call calls[] = {
    {"Data_getToken_REQ", {}},
    {"Data_getSymbolDetail_REQ", {u"S"_qs}},
    {"Data_getCurrentTick_REQ", {u"S"_qs}},
    {"Data_getFundAccountList_REQ", {1}},
    {"Data_getTraderList_REQ", {}},
    {"Data_getLoginTrader_REQ", {}},
    {"Data_getSymbolList_REQ", {uR"({"symbolFilter":[{"securityType":"Bond"}]})"_qs}},
    {"Data_getSymbolListWithDetail_REQ", {uR"({"symbolFilter":[{"securityType":"Bond"}]})"_qs}},
    {"Data_getEntrustList_REQ", {uR"({"symbol":["S"]})"_qs, 0, 10}},
    {"Data_getExecutionList_REQ", {uR"({"symbol":["S"]})"_qs, 0, 10}},
    {"Data_getPositionList_REQ", {u"f1"_qs, u"S"_qs}},
    {"Data_getAsset_REQ", {u"f1"_qs}},
    {"Data_getTradableQty_REQ", {u"f1"_qs, u"S"_qs, u"SH"_qs, u"Buy"_qs, u"Limit"_qs, u"1.5"_qs, u"tag"_qs}},
    {"Data_getSetting_REQ", {u"k"_qs}},
    {"Data_saveSetting_REQ", {u"k"_qs, u"v"_qs}},
    {"Data_getPermission_REQ", {u"f1"_qs, u"type"_qs}},
    {"Data_openPermissionMenu_REQ", {}},
    {"Data_getUpsDownsAnalysis_REQ", {u"a"_qs, u"b"_qs, u"c"_qs}},
    {"Data_getKLineData_REQ", {u"S"_qs, u"20250101"_qs, u"20250102"_qs, u"1"_qs}, Answered::WithCandles},
    {"Data_getOPStation_REQ", {u"A"_qs, u"B"_qs}},
    {"Trade_reqCancelOrder_REQ", {u"O1,O2"_qs}},
    {"Trade_insertOrder_REQ", {u"f1"_qs, u"S"_qs, u"SH"_qs, u"Buy"_qs, u"Limit"_qs, u"1.5"_qs, u"100"_qs, u"tag"_qs}},
    {"Trade_insertOrderList_REQ", {u"f1"_qs, u"tag"_qs, uR"([{"symbol":"S","qty":"100"}])"_qs}},
    {"Sub_subscribe_REQ", {u"S"_qs}},
    {"UnSub_subscribe_REQ", {u"S"_qs}},
    {"UnSub_subscribeAll_REQ", {}},
    {"Vlx_startStrategy_REQ", {u"file"_qs, 1, u"f1"_qs, u"param"_qs, u"ext"_qs}, Answered::ByPlatform},
    {"Vlx_stopStrategy_REQ", {u"S1"_qs, u"ext"_qs}, Answered::ByPlatform},
    {"Vlx_subStrategyMsg_REQ", {u"m1"_qs, u"1"_qs}, Answered::Never},
    {"Vlx_sendCustomInfo_REQ", {u"m1"_qs, u"hello"_qs}, Answered::Never},
    {"Vlx_queryStrategyStatus_REQ", {u"S1"_qs, u"ext"_qs}, Answered::ByPlatform},
};

/// Both pages are registered. The host answers every call, mostly with an empty answer.
class HostilePagesTest : public testing::Test {
protected:
    HostilePagesTest()
    {
        const QList<tagUserAccountInfo> accounts{{u"f1"_qs, u"name"_qs, u"t1"_qs}};
        ON_CALL(host, VarnelBusinessDataInterface_GetAccountInfoListFromFund).WillByDefault(Return(accounts));
        ON_CALL(host, VarnelBusinessDataInterface_GetAccountInfoListFromTrade).WillByDefault(Return(accounts));
        ON_CALL(host, VarnelTradeLogic_transOrderRsp).WillByDefault(Return(QList<QVariantMap>{{}}));
        ON_CALL(host, VarnelBusinessDataInterface_GetOrloEventMsgIdByStr).WillByDefault(Return(int(strategyEvent)));
        ON_CALL(host, CBusinessDataBase_GetLoginAccount).WillByDefault(Return(account.name));
        ON_CALL(host, QvCore_getCurrentToken).WillByDefault(Return(u"T"_qs));
        ON_CALL(host, QvPresenterClass_sendRequest_Async).WillByDefault([this](const MessageRecord &request) {
            sent = request;
            return 0;
        });
        ON_CALL(host, QvPresenterClass_PutEvent).WillByDefault([this](int, const MessageRecord &event) {
            sent = event;
        });
        center = WebMsgCenter::instance();
        for (VarnelCefView *const page : {&view, &other})
            center->reg(page);
        data = new DataThread(&view);
        trade = new TradeThread(&view);
        dataOfOther = new DataThread(&other);
    }

    static constexpr int strategyEvent = 0x5A5A5;
    const OwnAccount account;
    testing::NiceMock<HostMock> host;
    LogRecorder log;
    MessageRecord sent; ///< the last one that the library put on the bus
    RecordingView view;
    RecordingView other;
    WebMsgCenter *center = nullptr;
    DataThread *data = nullptr; // these go with the views
    TradeThread *trade = nullptr;
    DataThread *dataOfOther = nullptr;
};

class HostileCallsTest : public HostilePagesTest, public testing::WithParamInterface<Call> {
protected:
    /// Makes the call as a host does. Subscriptions have the uuid and the symbols as texts already.
    void make(const QVariantList &args)
    {
        const QString method = QString::fromLatin1(GetParam().method);
        const QString uuid = args.value(0).toString();
        const QStringList symbols{args.value(1).toString(), QString(), args.value(1).toString()};
        if (method.startsWith(u"Data_"_qs))
            EXPECT_TRUE(data->onInvokeMethod(1, 2, method, args));
        else if (method.startsWith(u"Trade_"_qs))
            EXPECT_TRUE(trade->onInvokeMethod(1, 2, method, args));
        else if (method.startsWith(u"Vlx_"_qs))
            EXPECT_TRUE(QMetaObject::invokeMethod(center, GetParam().method, Q_ARG(QVariantList, args),
                                                  Q_ARG(VarnelCefView *, &view)));
        else if (method == u"Sub_subscribe_REQ"_qs)
            center->subscribe(&view, uuid, symbols);
        else if (method == u"UnSub_subscribe_REQ"_qs)
            center->unsubscribe(&view, uuid, symbols);
        else
            center->unsubscribeAll(&view, uuid);
    }

    /// The bus and the strategy platform answer what was sent to them last.
    void answerLater()
    {
        using namespace Varnel_Fields;
        static const QHash<QString, QString> responses{
            {VeloxValues::MSEventStartStrategyReq, VeloxValues::MSEventStartStrategyRsp},
            {VeloxValues::MSEventStopStrategyReq, VeloxValues::MSEventStopStrategyRsp},
            {VeloxValues::MSEventQueryStrategyStatusReq, VeloxValues::MSEventQueryStrategyStatusRsp}};
        if (GetParam().answered == Answered::WithCandles) {
            const QVariantList candles{QVariantMap{{Tessar_Fields::System::clientMsgID, sent.clientMsgId}}};
            for (int times = 0; times < 2; ++times) // the second one belongs to no call
                HostBus::deliverQuotation(QString(), u"KLineResponse"_qs, candles);
        } else if (GetParam().answered == Answered::ByPlatform) {
            QVariantMap row;
            for (const auto &[key, value] : qAsConst(sent.fields))
                row.insert(key, value);
            QVariant &subEvent = row[VeloxFields::msgSubEventType];
            subEvent = responses.value(subEvent.toString());
            HostBus::deliverEvent(QString(), int(strategyEvent), packedRow(row));
        }
    }

    /// What the page gets for one call: name and text of each event. The number of a request for candles, which differs
    /// from call to call, is left out.
    QStringList receivedFor(const QVariantList &args)
    {
        view.clear();
        EXPECT_NO_THROW(make(args));
        if (GetParam().answered != Answered::AtOnce) {
            EXPECT_THAT(view.eventsAfterDraining(), IsEmpty()) << "answered before it could be";
            EXPECT_NO_THROW(answerLater());
            view.eventsAfterDraining();
        }
        QStringList received = receivedBy(view);
        if (!sent.clientMsgId.isEmpty())
            received.replaceInStrings(sent.clientMsgId, QString());
        return received;
    }

    /// The other page got nothing, and its own next call is answered.
    void expectOtherPageUndisturbed()
    {
        EXPECT_THAT(other.events(), IsEmpty());
        EXPECT_TRUE(dataOfOther->onInvokeMethod(1, 2, u"Data_getToken_REQ"_qs, {u"o"_qs}));
        EXPECT_THAT(receivedBy(other), ElementsAre(u"Data_getToken_RES"_qs, successReply(u"\"T\""_qs, u"o"_qs)));
        other.clear();
        log.clear();
    }

    static bool isFilter(int position)
    {
        return position == 1 && !GetParam().good.isEmpty() &&
               GetParam().good.first().toString().startsWith(QLatin1Char('{'));
    }

    /// The reply to a call whose argument at that position was the value.
    static void expectReply(const QString &reply, int position, const HostileValue &hostile)
    {
        const QByteArray method = GetParam().method;
        const bool isJson = !QJsonDocument::fromJson(hostile.value.toByteArray()).isNull();
        // These two have replies without an envelope.
        if (method == "Data_getUpsDownsAnalysis_REQ" ||
            (method == "Trade_insertOrderList_REQ" && position == 3 && !isJson)) {
            EXPECT_EQ(reply, QString());
            return;
        }
        QJsonParseError error;
        const QJsonObject envelope = QJsonDocument::fromJson(reply.toUtf8(), &error).object();
        EXPECT_EQ(error.error, QJsonParseError::NoError) << qPrintable(error.errorString());
        EXPECT_EQ(envelope.value(u"uuid"_qs).toString(), position == 0 ? hostile.text : u"u1"_qs);
        if (isFilter(position)) {
            EXPECT_EQ(envelope.value(u"code"_qs).toString(), isJson ? u"0"_qs : u"-1"_qs);
            EXPECT_EQ(envelope.contains(u"resultData"_qs), isJson);
        }
    }
};

QString resultEvent(const char *method)
{
    return QString::fromLatin1(method).replace(u"_REQ"_qs, u"_RES"_qs);
}

TEST_P(HostileCallsTest, AreAnsweredOnceWhateverAnArgumentIs)
{
    QList<HostileValue> values = hostileValues();
    values.append(endlessText()); // last: a setting would be written again and again
    QVariantList args{u"u1"_qs};
    args += GetParam().good;
    for (const HostileValue &hostile : qAsConst(values)) {
        for (int position = 0; position < args.size(); ++position) {
            SCOPED_TRACE(testing::Message() << hostile.name << " at " << position);
            QVariantList hostileArgs = args;
            hostileArgs[position] = hostile.value;
            const QStringList received = receivedFor(hostileArgs);
            if (GetParam().answered == Answered::Never) {
                EXPECT_THAT(received, IsEmpty());
            } else {
                ASSERT_THAT(received, ElementsAre(resultEvent(GetParam().method), _));
                expectReply(received.last(), position, hostile);
            }
            expectOtherPageUndisturbed();
        }
    }
}

class ArgumentCountTest : public HostileCallsTest {};

TEST_P(ArgumentCountTest, MayBeTooSmallOrTooLarge)
{
    QVariantList args{u"u1"_qs};
    args += GetParam().good;
    const QStringList answer = receivedFor(args);
    for (int count = 0; count < args.size(); ++count) {
        SCOPED_TRACE(testing::Message() << count << " arguments");
        sent = {};
        QStringList expected;
        if (GetParam().answered == Answered::AtOnce)
            expected = QStringList{resultEvent(GetParam().method), QString()};
        EXPECT_EQ(receivedFor(args.mid(0, count)), expected);
        EXPECT_THAT(sent.fields, IsEmpty());
        expectOtherPageUndisturbed();
    }
    const QList<HostileValue> values = hostileValues();
    for (const HostileValue &hostile : values) {
        SCOPED_TRACE(testing::Message() << "surplus " << hostile.name);
        EXPECT_EQ(receivedFor(args + QVariantList{hostile.value, hostile.value}), answer);
        expectOtherPageUndisturbed();
    }
}

std::string nameOf(const testing::TestParamInfo<Call> &call)
{
    return QString::fromLatin1(call.param.method).remove(QLatin1Char('_')).toStdString();
}

/// Those whose arguments the library counts. Those of a subscription are counted by the host.
std::vector<Call> countedCalls()
{
    std::vector<Call> counted;
    std::copy_if(std::begin(calls), std::end(calls), std::back_inserter(counted),
                 [](const Call &call) { return !QByteArray(call.method).contains("ub_"); });
    return counted;
}

INSTANTIATE_TEST_SUITE_P(Of, HostileCallsTest, testing::ValuesIn(calls), nameOf);
INSTANTIATE_TEST_SUITE_P(Of, ArgumentCountTest, testing::ValuesIn(countedCalls()), nameOf);

TEST(HostileCallsTableTest, HasEveryHandler)
{
    QStringList handlers;
    for (const QMetaObject *meta :
         {&DataThread::staticMetaObject, &TradeThread::staticMetaObject, &WebMsgCenter::staticMetaObject}) {
        for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
            const QString name = QString::fromLatin1(meta->method(i).name());
            if (name.endsWith(u"_REQ"_qs))
                handlers << name;
        }
    }
    handlers << u"Sub_subscribe_REQ"_qs << u"UnSub_subscribe_REQ"_qs << u"UnSub_subscribeAll_REQ"_qs;
    QStringList tested;
    for (const Call &call : calls)
        tested << QString::fromLatin1(call.method);
    EXPECT_THAT(tested, testing::UnorderedElementsAreArray(handlers));
}

TEST_F(HostilePagesTest, GetQuotesOfHostileSymbols)
{
    const QList<HostileValue> values = hostileValues();
    for (const HostileValue &hostile : values) {
        SCOPED_TRACE(hostile.name);
        const QString symbol = hostile.value.toString();
        center->subscribe(&view, u"u1"_qs, {symbol, QString(), symbol});
        view.clear();
        EXPECT_NO_THROW(emitTick(symbol, {{symbol, hostile.value}}));
        ASSERT_THAT(receivedBy(view), ElementsAre(u"on_tickUpdate"_qs, _));
        EXPECT_TRUE(QJsonDocument::fromJson(receivedBy(view).last().toUtf8()).isObject());
        center->unsubscribe(&view, u"u1"_qs, {symbol});
        center->unsubscribeAll(&view, u"u1"_qs);
        EXPECT_THAT(other.events(), IsEmpty());
    }
}

TEST_F(HostilePagesTest, AreNotEndedByWhatTheBusDelivers)
{
    const QList<HostileValue> values = hostileValues();
    for (const int id : {0x300A0, 0x30003, 0x30005, 0x30004, 0x30006, 0x31002, 0x30001, int(strategyEvent)}) {
        for (const HostileValue &hostile : values) {
            SCOPED_TRACE(testing::Message() << id << ' ' << hostile.name);
            const QString text = hostile.value.toString();
            const QVariant &value = hostile.value;
            EXPECT_NO_THROW(HostBus::deliverEvent(text, id, value));
            EXPECT_NO_THROW(HostBus::deliverEvent(text, id, packedRow({{text, value}})));
            EXPECT_NO_THROW(center->ProcQuotationMsg(text, value, value));
            EXPECT_NO_THROW(center->ProcQuotationMsg(text, u"KLineResponse"_qs, value));
            EXPECT_NO_THROW(center->ProcAsyncCallBack(id, text, value, value));
            EXPECT_NO_THROW(HostBus::deliverEvent(text, value, value));
        }
    }
    EXPECT_NO_THROW(view.eventsAfterDraining());
}

} // namespace
