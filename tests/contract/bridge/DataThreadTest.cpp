#include "DispatcherTest.h"
#include "Replies.h"
#include "ThreadGate.h"
#include "common/HeaderTexts.h"

#include <algorithm>
#include <iterator>
#include <memory>

using testing::ElementsAre;
using testing::Return;

namespace {

/// The calls that are answered at once: all but the one for candles.
const struct {
    const char *method;
    const char *event;
    int needed;
} calls[] = {
    {"Data_getToken_REQ", "Data_getToken_RES", 1},
    {"Data_getSymbolDetail_REQ", "Data_getSymbolDetail_RES", 2},
    {"Data_getCurrentTick_REQ", "Data_getCurrentTick_RES", 2},
    {"Data_getFundAccountList_REQ", "Data_getFundAccountList_RES", 2},
    {"Data_getTraderList_REQ", "Data_getTraderList_RES", 1},
    {"Data_getLoginTrader_REQ", "Data_getLoginTrader_RES", 1},
    {"Data_getSymbolList_REQ", "Data_getSymbolList_RES", 2},
    {"Data_getSymbolListWithDetail_REQ", "Data_getSymbolListWithDetail_RES", 2},
    {"Data_getEntrustList_REQ", "Data_getEntrustList_RES", 4},
    {"Data_getExecutionList_REQ", "Data_getExecutionList_RES", 4},
    {"Data_getPositionList_REQ", "Data_getPositionList_RES", 3},
    {"Data_getAsset_REQ", "Data_getAsset_RES", 2},
    {"Data_getTradableQty_REQ", "Data_getTradableQty_RES", 8},
    {"Data_getSetting_REQ", "Data_getSetting_RES", 2},
    {"Data_saveSetting_REQ", "Data_saveSetting_RES", 3},
    {"Data_getPermission_REQ", "Data_getPermission_RES", 3},
    {"Data_openPermissionMenu_REQ", "Data_openPermissionMenu_RES", 1},
    {"Data_getUpsDownsAnalysis_REQ", "Data_getUpsDownsAnalysis_RES", 4},
    {"Data_getOPStation_REQ", "Data_getOPStation_RES", 3},
};

const QVariantList enoughForAll{0, 1, 2, 3, 4, 5, 6, 7};

class DataThreadTest : public DispatcherTest {};

TEST_F(DataThreadTest, TokenIsAnsweredBeforeTheCallReturns)
{
    EXPECT_CALL(host, QvCore_getCurrentToken()).WillOnce(Return(u"T"_qs));
    EXPECT_TRUE(call("Data_getToken_REQ", {u"u1"_qs}));
    EXPECT_THAT(received(), ElementsAre(u"Data_getToken_RES"_qs, successReply(u"\"T\""_qs)));
    EXPECT_EQ(view.events().first().thread, QThread::currentThread());
}

TEST_F(DataThreadTest, LoginTraderIsAnswered)
{
    EXPECT_CALL(host, CBusinessDataBase_GetLoginAccount()).WillOnce(Return(u"me"_qs));
    EXPECT_TRUE(call("Data_getLoginTrader_REQ", {u"u1"_qs}));
    EXPECT_THAT(received(), ElementsAre(u"Data_getLoginTrader_RES"_qs, successReply(u"\"me\""_qs)));
}

TEST_F(DataThreadTest, TraderListIsAnswered)
{
    EXPECT_CALL(host, VarnelBusinessDataInterface_GetOrganTraderList())
        .WillOnce(Return(QMap<QString, QString>{{u"t1"_qs, u"name"_qs}}));
    EXPECT_TRUE(call("Data_getTraderList_REQ", {u"u1"_qs}));
    EXPECT_THAT(received(), ElementsAre(u"Data_getTraderList_RES"_qs, successReply(u"[\"t1\"]"_qs)));
}

TEST_F(DataThreadTest, FundPropertyIsReadThroughItsTextAndIsZeroWhenThatIsNoInteger)
{
    const struct {
        QVariant sent;
        int asked;
    } readings[] = {{u"2"_qs, 2},    {2, 2},    {u"abc"_qs, 0},     {2.5, 0},
                    {QVariant(), 0}, {true, 0}, {QVariantMap(), 0}, {u"99999999999"_qs, 0}};
    for (const auto &reading : readings) {
        EXPECT_CALL(host, VarnelBusinessDataInterface_GetFundAccountListByFundProp(reading.asked, 16, false,
                                                                                   QStringList(), true))
            .WillOnce(Return(QList<tagUserAccountInfo>()));
        EXPECT_TRUE(call("Data_getFundAccountList_REQ", {u"u1"_qs, reading.sent}));
        EXPECT_THAT(received(), ElementsAre(u"Data_getFundAccountList_RES"_qs, successReply(u"[]"_qs)));
        testing::Mock::VerifyAndClearExpectations(&host);
        view.clear();
    }
    EXPECT_CALL(host, QvPresenterClass_pluginPid()).WillRepeatedly(Return(1));
}

TEST_F(DataThreadTest, StationIsAnsweredFromBothTexts)
{
    EXPECT_CALL(host, VarnelBusinessDataInterface_GetVarnelOrderStation(u"7;B"_qs)).WillOnce(Return(u"S"_qs));
    EXPECT_TRUE(call("Data_getOPStation_REQ", {u"u1"_qs, 7, u"B"_qs}));
    EXPECT_THAT(received(), ElementsAre(u"Data_getOPStation_RES"_qs, successReply(u"\"S\""_qs)));
}

TEST_F(DataThreadTest, TooFewArgumentsAnswerWithTheEmptyText)
{
    for (const auto &known : calls) {
        QVariantList args;
        for (int count = 0; count < known.needed; ++count, args.append(u"1"_qs)) {
            EXPECT_TRUE(call(known.method, args));
            EXPECT_THAT(received(), ElementsAre(QString::fromLatin1(known.event), QString()))
                << known.method << " with " << count;
            view.clear();
        }
    }
}

TEST_F(DataThreadTest, SurplusArgumentsAreIgnored)
{
    EXPECT_CALL(host, QvCore_getCurrentToken()).WillOnce(Return(u"T"_qs));
    EXPECT_TRUE(call("Data_getToken_REQ", {u"u1"_qs, QVariantMap(), QVariantList{1}}));
    EXPECT_THAT(received(), ElementsAre(u"Data_getToken_RES"_qs, successReply(u"\"T\""_qs)));
}

TEST_F(DataThreadTest, UuidThatIsANumberComesBackAsItsText)
{
    EXPECT_CALL(host, QvCore_getCurrentToken()).WillOnce(Return(QString()));
    EXPECT_TRUE(call("Data_getToken_REQ", {7}));
    EXPECT_THAT(received(), ElementsAre(u"Data_getToken_RES"_qs, successReply(u"\"\""_qs, u"7"_qs)));
}

TEST_F(DataThreadTest, UuidThatIsNoTextComesBackEmpty)
{
    EXPECT_CALL(host, QvCore_getCurrentToken()).Times(3).WillRepeatedly(Return(QString()));
    for (const QVariant &uuid : {QVariant(), QVariant(QVariantMap()), QVariant(QVariantList{1, 2})})
        EXPECT_TRUE(call("Data_getToken_REQ", {uuid}));
    const QString empty = successReply(u"\"\""_qs, u""_qs);
    const QString name = u"Data_getToken_RES"_qs;
    EXPECT_THAT(received(), ElementsAre(name, empty, name, empty, name, empty));
}

TEST_F(DataThreadTest, HugeTextsPassThrough)
{
    const QString huge(1 << 20, QLatin1Char('x'));
    EXPECT_CALL(host, VarnelBusinessDataInterface_GetVarnelOrderStation(huge)).WillOnce(Return(huge));
    EXPECT_TRUE(call("Data_getOPStation_REQ", {huge, huge, QString()}));
    ASSERT_EQ(received().size(), 2);
    EXPECT_EQ(received().at(1).size(), 2 * huge.size() + successReply(u"\"\""_qs, u""_qs).size());
}

TEST_F(DataThreadTest, UnknownNamesAreRefusedAndNotAnswered)
{
    for (const char *name :
         {"Data_getBuffer_REQ", "Data_saveBuffer_REQ", "Data_unknown_REQ", "", "data_getToken_REQ", "Data_getToken_RES",
          "Data_getToken_REQ(QVariantList)", "Data_getToken_REQ()", "Data_get Token_REQ", "deleteLater", "destroyed",
          "objectNameChanged", "onInvokeMethod", "setView", "Trade_insertOrder_REQ", "数据"}) {
        EXPECT_FALSE(call(name, {u"u1"_qs})) << name;
    }
    EXPECT_TRUE(view.eventsAfterDraining().isEmpty());
}

TEST_F(DataThreadTest, WithoutAViewNothingIsAnsweredAndTheHostIsNotAsked)
{
    dispatcher->setView(nullptr);
    for (const auto &known : calls) {
        EXPECT_TRUE(call(known.method, enoughForAll)) << known.method;
        EXPECT_TRUE(call(known.method, {})) << known.method;
    }
    EXPECT_TRUE(view.eventsAfterDraining().isEmpty());
}

TEST_F(DataThreadTest, AnotherViewGetsTheRepliesOnceItIsSet)
{
    RecordingView other;
    dispatcher->setView(&other);
    EXPECT_TRUE(view.eventsAfterDraining().isEmpty());

    EXPECT_CALL(host, QvCore_getCurrentToken()).WillOnce(Return(u"T"_qs));
    EXPECT_TRUE(call("Data_getToken_REQ", {u"u1"_qs}));
    EXPECT_EQ(other.eventNames(), QStringList{u"Data_getToken_RES"_qs});
    EXPECT_TRUE(view.eventsAfterDraining().isEmpty());
}

TEST_F(DataThreadTest, HandlersAreTheMetaMethodsInTheirFixedOrder)
{
    const QMetaObject &meta = DataThread::staticMetaObject;
    EXPECT_STREQ(meta.className(), "DataThread");
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        EXPECT_EQ(method.methodSignature(), method.name() + "(QVariantList)");
        EXPECT_EQ(method.returnType(), int(QMetaType::Void));
        EXPECT_EQ(method.access(), QMetaMethod::Private);
        EXPECT_EQ(method.methodType(), QMetaMethod::Method);
    }
    EXPECT_THAT(
        handledMethods(),
        ElementsAre(u"Data_getToken_REQ"_qs, u"Data_getSymbolDetail_REQ"_qs, u"Data_getCurrentTick_REQ"_qs,
                    u"Data_getFundAccountList_REQ"_qs, u"Data_getTraderList_REQ"_qs, u"Data_getLoginTrader_REQ"_qs,
                    u"Data_getSymbolList_REQ"_qs, u"Data_getSymbolListWithDetail_REQ"_qs, u"Data_getEntrustList_REQ"_qs,
                    u"Data_getExecutionList_REQ"_qs, u"Data_getPositionList_REQ"_qs, u"Data_getAsset_REQ"_qs,
                    u"Data_getTradableQty_REQ"_qs, u"Data_getSetting_REQ"_qs, u"Data_saveSetting_REQ"_qs,
                    u"Data_getPermission_REQ"_qs, u"Data_openPermissionMenu_REQ"_qs, u"Data_getUpsDownsAnalysis_REQ"_qs,
                    u"Data_getKLineData_REQ"_qs, u"Data_getOPStation_REQ"_qs));
}

TEST_F(DataThreadTest, EveryDataCallOfTheProtocolIsHandled)
{
    QStringList protocol = textsOfTheHeader(u"Method"_qs).filter(QRegularExpression(u"^Data_.*_REQ$"_qs));
    EXPECT_EQ(protocol.size(), 20);
    QStringList handled = handledMethods();
    protocol.sort();
    handled.sort();
    EXPECT_EQ(handled, protocol);
}

TEST_F(DataThreadTest, EveryHandlerButTheOneForCandlesIsInTheTableOfCalls)
{
    QStringList tested{u"Data_getKLineData_REQ"_qs};
    std::transform(std::begin(calls), std::end(calls), std::back_inserter(tested),
                   [](const auto &known) { return QString::fromLatin1(known.method); });
    QStringList handled = handledMethods();
    tested.sort();
    handled.sort();
    EXPECT_EQ(tested, handled);
}

TEST_F(DataThreadTest, ReservedCallsAreRefusedAndNotAnswered)
{
    const QStringList reserved = textsOfTheHeader(u"Reserved"_qs);
    EXPECT_TRUE(reserved.contains(u"Data_getBuffer_REQ"_qs) && reserved.contains(u"Data_saveBuffer_REQ"_qs));
    for (const QString &name : reserved)
        EXPECT_FALSE(dispatcher->onInvokeMethod(1, 2, name, enoughForAll)) << qPrintable(name);
    EXPECT_TRUE(view.eventsAfterDraining().isEmpty());
}

TEST_F(DataThreadTest, DiesWithItsView)
{
    EXPECT_EQ(dispatcher->parent(), &view);
    EXPECT_EQ(dispatcher->thread(), QThread::currentThread());
    // Qt says once that an object with a parent cannot be moved.
    EXPECT_EQ(log.linesWith(u"Cannot move objects with a parent"_qs).size(), 1);
}

TEST_F(DataThreadTest, LogsItsDestruction)
{
    log.clear();
    delete dispatcher;
    ASSERT_EQ(log.lines().size(), 1);
    EXPECT_EQ(log.lines().first().type, QtDebugMsg);
    EXPECT_EQ(log.lines().first().message, u"DataThread::~DataThread"_qs);
    EXPECT_EQ(log.lines().first().category, u"varnel.websdk"_qs);
}

class ParentlessDataThreadTest : public HostTest {
protected:
    ParentlessDataThreadTest()
    {
        expectStart();
        dispatcher = std::make_unique<DataThread>(nullptr);
        gate.hold(dispatcher->thread());
    }

    ~ParentlessDataThreadTest() override { gate.open(); }

    bool call(const char *method, const QVariantList &args)
    {
        return dispatcher->onInvokeMethod(1, 2, QString::fromUtf8(method), args);
    }

    RecordingView view;
    ThreadGate gate;
    std::unique_ptr<DataThread> dispatcher;
};

TEST_F(ParentlessDataThreadTest, AnswersOnAThreadOfItsOwn)
{
    EXPECT_NE(dispatcher->thread(), QThread::currentThread());
    EXPECT_EQ(dispatcher->thread()->objectName(), u"DataThread"_qs);

    EXPECT_CALL(host, QvCore_getCurrentToken()).WillOnce(Return(u"T"_qs));
    dispatcher->setView(&view);
    EXPECT_TRUE(call("Data_getToken_REQ", {u"u1"_qs}));
    gate.open();
    ASSERT_TRUE(view.waitForEvent(u"Data_getToken_RES"_qs));
    EXPECT_EQ(view.events().first().thread, dispatcher->thread());
    EXPECT_EQ(view.events().first().arguments, QVariantList{successReply(u"\"T\""_qs)});
}

TEST_F(ParentlessDataThreadTest, RefusesUnknownNamesAtOnce)
{
    EXPECT_FALSE(call("Data_getBuffer_REQ", {u"u1"_qs}));
}

TEST_F(ParentlessDataThreadTest, KeepsTheOrderOfItsCalls)
{
    constexpr int count = 20;
    EXPECT_CALL(host, QvCore_getCurrentToken()).Times(count).WillRepeatedly(Return(QString()));
    dispatcher->setView(&view);
    for (int i = 0; i < count; ++i)
        EXPECT_TRUE(call("Data_getToken_REQ", {i}));
    gate.open();
    ASSERT_TRUE(view.waitForEvents(count));
    for (int i = 0; i < count; ++i)
        EXPECT_EQ(view.events().at(i).arguments.first().toString(), successReply(u"\"\""_qs, QString::number(i)));
}

TEST_F(ParentlessDataThreadTest, AnswersWithTheViewThatIsSetWhenTheCallRuns)
{
    EXPECT_TRUE(call("Data_getToken_REQ", {}));
    dispatcher->setView(&view);
    gate.open();
    ASSERT_TRUE(view.waitForEvent(u"Data_getToken_RES"_qs));
    EXPECT_EQ(view.events().first().arguments, QVariantList{QString()});
}

} // namespace
