#include "bridge/DataThread.h"

#include "HostTest.h"
#include "LogRecorder.h"
#include "RecordingView.h"
#include "ThreadGate.h"

#include "common/WebConstants.h"

#include <QMetaMethod>

#include <memory>

using testing::ElementsAre;
using testing::Return;

namespace {

QString reply(const char *resultData, const char *uuid = "u1")
{
    return QStringLiteral(R"({"code":"0","msg":"","resultData":%1,"uuid":"%2"})")
        .arg(QString::fromUtf8(resultData), QString::fromUtf8(uuid));
}

class DataThreadTest : public HostTest {
protected:
    DataThreadTest()
    {
        expectStart();
        dispatcher = new DataThread(&view);
    }

    bool call(const char *method, const QVariantList &args)
    {
        return dispatcher->onInvokeMethod(1, 2, QString::fromUtf8(method), args);
    }

    /// What the page got, as name and single text.
    QStringList received() const
    {
        QStringList texts;
        for (const ViewEvent &event : view.events()) {
            EXPECT_EQ(event.arguments.size(), 1);
            EXPECT_EQ(event.arguments.value(0).userType(), int(QMetaType::QString));
            texts << event.name << event.arguments.value(0).toString();
        }
        return texts;
    }

    LogRecorder log;
    RecordingView view;
    DataThread *dispatcher = nullptr; // goes with the view
};

TEST_F(DataThreadTest, TokenIsAnsweredBeforeTheCallReturns)
{
    EXPECT_CALL(host, QvCore_getCurrentToken()).WillOnce(Return(QStringLiteral("T")));
    EXPECT_TRUE(call("Data_getToken_REQ", {QStringLiteral("u1")}));
    EXPECT_THAT(received(), ElementsAre(QStringLiteral("Data_getToken_RES"), reply("\"T\"")));
    EXPECT_EQ(view.events().first().thread, QThread::currentThread());
}

TEST_F(DataThreadTest, LoginTraderIsAnswered)
{
    EXPECT_CALL(host, CBusinessDataBase_GetLoginAccount()).WillOnce(Return(QStringLiteral("me")));
    EXPECT_TRUE(call("Data_getLoginTrader_REQ", {QStringLiteral("u1")}));
    EXPECT_THAT(received(), ElementsAre(QStringLiteral("Data_getLoginTrader_RES"), reply("\"me\"")));
}

TEST_F(DataThreadTest, TraderListIsAnswered)
{
    EXPECT_CALL(host, VarnelBusinessDataInterface_GetOrganTraderList())
        .WillOnce(Return(QMap<QString, QString>{{QStringLiteral("t1"), QStringLiteral("name")}}));
    EXPECT_TRUE(call("Data_getTraderList_REQ", {QStringLiteral("u1")}));
    EXPECT_THAT(received(), ElementsAre(QStringLiteral("Data_getTraderList_RES"), reply("[\"t1\"]")));
}

TEST_F(DataThreadTest, FundPropertyIsReadThroughItsTextAndIsZeroWhenThatIsNoInteger)
{
    const struct {
        QVariant sent;
        int asked;
    } readings[] = {
        {QStringLiteral("2"), 2}, {2, 2},    {QStringLiteral("abc"), 0}, {2.5, 0},
        {QVariant(), 0},          {true, 0}, {QVariantMap(), 0},         {QStringLiteral("99999999999"), 0}};
    for (const auto &reading : readings) {
        EXPECT_CALL(host, VarnelBusinessDataInterface_GetFundAccountListByFundProp(reading.asked, 16, false,
                                                                                   QStringList(), true))
            .WillOnce(Return(QList<tagUserAccountInfo>()));
        EXPECT_TRUE(call("Data_getFundAccountList_REQ", {QStringLiteral("u1"), reading.sent}));
        EXPECT_THAT(received(), ElementsAre(QStringLiteral("Data_getFundAccountList_RES"), reply("[]")));
        testing::Mock::VerifyAndClearExpectations(&host);
        view.clear();
    }
    EXPECT_CALL(host, QvPresenterClass_pluginPid()).WillRepeatedly(Return(1));
}

TEST_F(DataThreadTest, StationIsAnsweredFromBothTexts)
{
    EXPECT_CALL(host, VarnelBusinessDataInterface_GetVarnelOrderStation(QStringLiteral("7;B")))
        .WillOnce(Return(QStringLiteral("S")));
    EXPECT_TRUE(call("Data_getOPStation_REQ", {QStringLiteral("u1"), 7, QStringLiteral("B")}));
    EXPECT_THAT(received(), ElementsAre(QStringLiteral("Data_getOPStation_RES"), reply("\"S\"")));
}

TEST_F(DataThreadTest, TooFewArgumentsAnswerWithTheEmptyText)
{
    const struct {
        const char *method;
        const char *event;
        int needed;
    } calls[] = {
        {"Data_getToken_REQ", "Data_getToken_RES", 1},
        {"Data_getFundAccountList_REQ", "Data_getFundAccountList_RES", 2},
        {"Data_getTraderList_REQ", "Data_getTraderList_RES", 1},
        {"Data_getLoginTrader_REQ", "Data_getLoginTrader_RES", 1},
        {"Data_getOPStation_REQ", "Data_getOPStation_RES", 3},
    };
    for (const auto &short_ : calls) {
        QVariantList args;
        for (int count = 0; count < short_.needed; ++count, args.append(QStringLiteral("1"))) {
            EXPECT_TRUE(call(short_.method, args));
            EXPECT_THAT(received(), ElementsAre(QString::fromLatin1(short_.event), QString()))
                << short_.method << " with " << count;
            view.clear();
        }
    }
}

TEST_F(DataThreadTest, SurplusArgumentsAreIgnored)
{
    EXPECT_CALL(host, QvCore_getCurrentToken()).WillOnce(Return(QStringLiteral("T")));
    EXPECT_TRUE(call("Data_getToken_REQ", {QStringLiteral("u1"), QVariantMap(), QVariantList{1}}));
    EXPECT_THAT(received(), ElementsAre(QStringLiteral("Data_getToken_RES"), reply("\"T\"")));
}

TEST_F(DataThreadTest, UuidThatIsANumberComesBackAsItsText)
{
    EXPECT_CALL(host, QvCore_getCurrentToken()).WillOnce(Return(QString()));
    EXPECT_TRUE(call("Data_getToken_REQ", {7}));
    EXPECT_THAT(received(), ElementsAre(QStringLiteral("Data_getToken_RES"), reply("\"\"", "7")));
}

TEST_F(DataThreadTest, UuidThatIsNoTextComesBackEmpty)
{
    EXPECT_CALL(host, QvCore_getCurrentToken()).Times(3).WillRepeatedly(Return(QString()));
    for (const QVariant &uuid : {QVariant(), QVariant(QVariantMap()), QVariant(QVariantList{1, 2})})
        EXPECT_TRUE(call("Data_getToken_REQ", {uuid}));
    const QString empty = reply("\"\"", "");
    const QString name = QStringLiteral("Data_getToken_RES");
    EXPECT_THAT(received(), ElementsAre(name, empty, name, empty, name, empty));
}

TEST_F(DataThreadTest, HugeTextsPassThrough)
{
    const QString huge(1 << 20, QLatin1Char('x'));
    EXPECT_CALL(host, VarnelBusinessDataInterface_GetVarnelOrderStation(huge)).WillOnce(Return(huge));
    EXPECT_TRUE(call("Data_getOPStation_REQ", {huge, huge, QString()}));
    ASSERT_EQ(received().size(), 2);
    EXPECT_EQ(received().at(1).size(), 2 * huge.size() + reply("\"\"", "").size());
}

TEST_F(DataThreadTest, UnknownNamesAreRefusedAndGetNothing)
{
    for (const char *name :
         {"Data_getBuffer_REQ", "Data_saveBuffer_REQ", "Data_unknown_REQ", "", "data_getToken_REQ", "Data_getToken_RES",
          "Data_getToken_REQ(QVariantList)", "Data_getToken_REQ()", "Data_get Token_REQ", "deleteLater", "destroyed",
          "objectNameChanged", "onInvokeMethod", "setView", "Trade_insertOrder_REQ", "数据"}) {
        EXPECT_FALSE(call(name, {QStringLiteral("u1")})) << name;
    }
    EXPECT_TRUE(view.eventsAfterDraining().isEmpty());
}

TEST_F(DataThreadTest, WithoutAViewNothingIsAnsweredAndTheHostIsNotAsked)
{
    dispatcher->setView(nullptr);
    for (const char *name : {"Data_getToken_REQ", "Data_getFundAccountList_REQ", "Data_getTraderList_REQ",
                             "Data_getLoginTrader_REQ", "Data_getOPStation_REQ"}) {
        EXPECT_TRUE(call(name, {QStringLiteral("u1"), QStringLiteral("1"), QStringLiteral("2")})) << name;
        EXPECT_TRUE(call(name, {})) << name;
    }
    EXPECT_TRUE(view.eventsAfterDraining().isEmpty());
}

TEST_F(DataThreadTest, AnotherViewGetsTheRepliesOnceItIsSet)
{
    RecordingView other;
    dispatcher->setView(&other);
    EXPECT_TRUE(view.eventsAfterDraining().isEmpty());

    EXPECT_CALL(host, QvCore_getCurrentToken()).WillOnce(Return(QStringLiteral("T")));
    EXPECT_TRUE(call("Data_getToken_REQ", {QStringLiteral("u1")}));
    EXPECT_EQ(other.eventNames(), QStringList{QStringLiteral("Data_getToken_RES")});
    EXPECT_TRUE(view.eventsAfterDraining().isEmpty());
}

TEST_F(DataThreadTest, HandlersAreTheMetaMethodsInTheirFixedOrder)
{
    const QMetaObject &meta = DataThread::staticMetaObject;
    EXPECT_STREQ(meta.className(), "DataThread");
    QStringList signatures;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        signatures << QString::fromLatin1(method.methodSignature());
        EXPECT_EQ(method.returnType(), int(QMetaType::Void));
        EXPECT_EQ(method.access(), QMetaMethod::Private);
        EXPECT_EQ(method.methodType(), QMetaMethod::Method);
    }
    EXPECT_THAT(signatures, ElementsAre(QStringLiteral("Data_getToken_REQ(QVariantList)"),
                                        QStringLiteral("Data_getFundAccountList_REQ(QVariantList)"),
                                        QStringLiteral("Data_getTraderList_REQ(QVariantList)"),
                                        QStringLiteral("Data_getLoginTrader_REQ(QVariantList)"),
                                        QStringLiteral("Data_getKLineData_REQ(QVariantList)"),
                                        QStringLiteral("Data_getOPStation_REQ(QVariantList)")));
}

TEST_F(DataThreadTest, StaysWithItsViewAndGoesWithIt)
{
    EXPECT_EQ(dispatcher->parent(), &view);
    EXPECT_EQ(dispatcher->thread(), QThread::currentThread());
    // Qt says once that an object with a parent cannot be moved.
    EXPECT_EQ(log.linesWith(QStringLiteral("Cannot move objects with a parent")).size(), 1);
}

TEST_F(DataThreadTest, SaysWhenItGoes)
{
    log.clear();
    delete dispatcher;
    ASSERT_EQ(log.lines().size(), 1);
    EXPECT_EQ(log.lines().first().type, QtDebugMsg);
    EXPECT_EQ(log.lines().first().message, QStringLiteral("DataThread::~DataThread"));
    EXPECT_EQ(log.lines().first().category, QStringLiteral("varnel.websdk"));
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
    EXPECT_EQ(dispatcher->thread()->objectName(), QStringLiteral("DataThread"));

    EXPECT_CALL(host, QvCore_getCurrentToken()).WillOnce(Return(QStringLiteral("T")));
    dispatcher->setView(&view);
    EXPECT_TRUE(call("Data_getToken_REQ", {QStringLiteral("u1")}));
    gate.open();
    ASSERT_TRUE(view.waitForEvent(QStringLiteral("Data_getToken_RES")));
    EXPECT_EQ(view.events().first().thread, dispatcher->thread());
    EXPECT_EQ(view.events().first().arguments, QVariantList{reply("\"T\"")});
}

TEST_F(ParentlessDataThreadTest, RefusesUnknownNamesAtOnce)
{
    EXPECT_FALSE(call("Data_getBuffer_REQ", {QStringLiteral("u1")}));
}

TEST_F(ParentlessDataThreadTest, KeepsTheOrderOfItsCalls)
{
    constexpr int calls = 20;
    EXPECT_CALL(host, QvCore_getCurrentToken()).Times(calls).WillRepeatedly(Return(QString()));
    dispatcher->setView(&view);
    for (int i = 0; i < calls; ++i)
        EXPECT_TRUE(call("Data_getToken_REQ", {i}));
    gate.open();
    ASSERT_TRUE(view.waitForEvents(calls));
    for (int i = 0; i < calls; ++i)
        EXPECT_EQ(view.events().at(i).arguments.first().toString(), reply("\"\"", QByteArray::number(i).constData()));
}

TEST_F(ParentlessDataThreadTest, AnswersWithTheViewThatIsSetWhenTheCallRuns)
{
    EXPECT_TRUE(call("Data_getToken_REQ", {}));
    dispatcher->setView(&view);
    gate.open();
    ASSERT_TRUE(view.waitForEvent(QStringLiteral("Data_getToken_RES")));
    EXPECT_EQ(view.events().first().arguments, QVariantList{QString()});
}

} // namespace
