#include "StrategiesTest.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using namespace Tessar_Fields;
using namespace Varnel_Fields;

const QVariantMap parameters{{u"depth"_qs, 3}, {u"名"_qs, QVariantList{1, QVariant()}}};

class StrategyRequestsTest : public StrategiesTest {
protected:
    RecordingView view; ///< not registered: requests need no registration
};

TEST_F(StrategyRequestsTest, StartCarriesItsFieldsInTheirOrder)
{
    const QVariantList extension{1, u"two"_qs};
    expectRequest(request(VeloxValues::MSEventStartStrategyReq,
                          {{Strategy::strategyBasicParam, parameters},
                           {u"FilePath"_qs, u"D:\\策略\\a.py"_qs},
                           {u"Language"_qs, 2},
                           {u"FundAccountList"_qs, QStringList{u"f1"_qs, u"f2"_qs}},
                           {u"ExtField"_qs, extension}},
                          &view, u"u1"_qs));
    call("Vlx_startStrategy_REQ", {u"u1"_qs, u"D:\\策略\\a.py"_qs, u"2"_qs, u"f1,f2"_qs, parameters, extension}, &view);
    EXPECT_THAT(view.eventsAfterDraining(), IsEmpty()); // the platform's answer is the page's
}

TEST_F(StrategyRequestsTest, FundAccountsAreAlwaysAListWithItsEmptyParts)
{
    const struct {
        QVariant sent;
        QStringList parts;
    } lists[] = {{u"f1"_qs, {u"f1"_qs}},
                 {u"f1,,f2"_qs, {u"f1"_qs, QString(), u"f2"_qs}},
                 {u", f"_qs, {QString(), u" f"_qs}},
                 {QString(), {QString()}},
                 {QVariant(), {QString()}},
                 {12, {u"12"_qs}},
                 {QVariantList{u"f1"_qs, u"f2"_qs}, {QString()}}};
    for (const auto &list : lists) {
        expectRequest(request(VeloxValues::MSEventStartStrategyReq,
                              {{Strategy::strategyBasicParam, QVariant()},
                               {u"FilePath"_qs, QString()},
                               {u"Language"_qs, 0},
                               {u"FundAccountList"_qs, list.parts},
                               {u"ExtField"_qs, QVariant()}},
                              &view, u"u1"_qs));
        call("Vlx_startStrategy_REQ", {u"u1"_qs, QVariant(), QVariant(), list.sent, QVariant(), QVariant()}, &view);
    }
}

TEST_F(StrategyRequestsTest, LanguageIsReadThroughItsText)
{
    const struct {
        QVariant sent;
        int language;
    } languages[] = {{1, 1}, {u" 3 "_qs, 3}, {u"python"_qs, 0}, {2.5, 0}, {true, 0}, {QVariantMap(), 0}, {-1, -1}};
    for (const auto &each : languages) {
        expectRequest(request(VeloxValues::MSEventStartStrategyReq,
                              {{Strategy::strategyBasicParam, u"p"_qs},
                               {u"FilePath"_qs, u"7"_qs},
                               {u"Language"_qs, each.language},
                               {u"FundAccountList"_qs, QStringList{u"f"_qs}},
                               {u"ExtField"_qs, u"e"_qs}},
                              &view, u"8"_qs));
        call("Vlx_startStrategy_REQ", {8, 7, each.sent, u"f"_qs, u"p"_qs, u"e"_qs, u"surplus"_qs}, &view);
    }
}

TEST_F(StrategyRequestsTest, StopAndQueryCarryTheStrategyAndTheExtension)
{
    const struct {
        const char *method;
        QString subEvent;
    } calls[] = {{"Vlx_stopStrategy_REQ", VeloxValues::MSEventStopStrategyReq},
                 {"Vlx_queryStrategyStatus_REQ", VeloxValues::MSEventQueryStrategyStatusReq}};
    for (const auto &each : calls) {
        for (const QVariant &extension : {QVariant(parameters), QVariant(), QVariant(1.5), QVariant(u"e"_qs)}) {
            expectRequest(request(each.subEvent, {{Strategy::strategyID, u"S-1"_qs}, {u"ExtField"_qs, extension}},
                                  &view, u"u1"_qs));
            call(each.method, {u"u1"_qs, u"S-1"_qs, extension, u"surplus"_qs}, &view);
        }
        expectRequest(
            request(each.subEvent, {{Strategy::strategyID, u"7"_qs}, {u"ExtField"_qs, true}}, &view, QString()));
        call(each.method, {QVariantMap(), 7, true}, &view);
    }
}

TEST_F(StrategyRequestsTest, CustomMessageCarriesItsIdAndText)
{
    const QString huge(1 << 20, u'x');
    const struct {
        QVariant id;
        QVariant message;
        QString idText;
        QString messageText;
    } messages[] = {{u"m1"_qs, u"{\"a\":1}"_qs, u"m1"_qs, u"{\"a\":1}"_qs},
                    {7, 1.5, u"7"_qs, u"1.5"_qs},
                    {QVariant(), QVariantMap{{u"a"_qs, 1}}, QString(), QString()},
                    {huge, u"a\u0000b"_qs, huge, u"a\u0000b"_qs}};
    for (const auto &each : messages) {
        expectRequest(request(
            VeloxValues::MSEventStrategyCustomMsg,
            {{VeloxFields::strategyCustomMsgID, each.idText}, {VeloxFields::strategyCustomMsg, each.messageText}},
            &view, u"u1"_qs));
        call("Vlx_sendCustomInfo_REQ", {u"u1"_qs, each.id, each.message}, &view);
    }
    EXPECT_THAT(view.eventsAfterDraining(), IsEmpty());
}

TEST_F(StrategyRequestsTest, SubscriptionCarriesItsIdAndSubType)
{
    for (const QVariant &subType : {QVariant(u"1"_qs), QVariant(1), QVariant(u"0"_qs), QVariant()}) {
        expectRequest(request(VeloxValues::MSEventSubStrategyMsg,
                              {{VeloxFields::strategyCustomMsgID, u"m1"_qs}, {u"SubType"_qs, subType.toString()}},
                              &view, u"u1"_qs));
        call("Vlx_subStrategyMsg_REQ", {u"u1"_qs, u"m1"_qs, subType, u"surplus"_qs}, &view);
    }
    EXPECT_THAT(view.eventsAfterDraining(), IsEmpty());
}

TEST_F(StrategyRequestsTest, TooFewArgumentsDoNothingAtAll)
{
    const struct {
        const char *method;
        int needed;
    } calls[] = {{"Vlx_startStrategy_REQ", 6},
                 {"Vlx_stopStrategy_REQ", 3},
                 {"Vlx_queryStrategyStatus_REQ", 3},
                 {"Vlx_sendCustomInfo_REQ", 3},
                 {"Vlx_subStrategyMsg_REQ", 3}};
    center->reg(&view);
    const QString nextId = nextClientMessageId();
    for (const auto &each : calls) {
        QVariantList arguments;
        for (int count = 0; count < each.needed; ++count, arguments.append(u"1"_qs))
            call(each.method, arguments, &view); // the bus would get an event that nobody expects
    }
    EXPECT_EQ(nextClientMessageId(), nextId);
    EXPECT_THAT(log.lines(), IsEmpty());
    answer(VeloxValues::MSEventStrategyCustomMsg, {{VeloxFields::strategyCustomMsgID, u"1"_qs}});
    EXPECT_THAT(view.eventsAfterDraining(), IsEmpty());
    center->unReg(&view);
}

TEST_F(StrategyRequestsTest, CanBeCalledDirectlyAndWithoutAView)
{
    const auto expectOne = [this](const QString &subEvent, const MessageFields &own, VarnelCefView *of) {
        expectRequest(request(subEvent, own, of, u"u"_qs));
    };
    const MessageFields strategy{{Strategy::strategyID, u"a"_qs}, {u"ExtField"_qs, u"b"_qs}};
    const MessageFields message{{VeloxFields::strategyCustomMsgID, u"a"_qs}, {VeloxFields::strategyCustomMsg, u"b"_qs}};
    const MessageFields subscription{{VeloxFields::strategyCustomMsgID, u"a"_qs}, {u"SubType"_qs, u"1"_qs}};
    for (VarnelCefView *of : {static_cast<VarnelCefView *>(&view), static_cast<VarnelCefView *>(nullptr)}) {
        const QVariantList arguments{u"u"_qs, u"a"_qs, u"b"_qs};
        expectOne(VeloxValues::MSEventStopStrategyReq, strategy, of);
        center->Vlx_stopStrategy_REQ(arguments, of);
        expectOne(VeloxValues::MSEventQueryStrategyStatusReq, strategy, of);
        center->Vlx_queryStrategyStatus_REQ(arguments, of);
        expectOne(VeloxValues::MSEventStrategyCustomMsg, message, of);
        center->Vlx_sendCustomInfo_REQ(arguments, of);
        expectOne(VeloxValues::MSEventSubStrategyMsg, subscription, of);
        center->Vlx_subStrategyMsg_REQ({u"u"_qs, u"a"_qs, u"1"_qs}, of);
        center->Vlx_startStrategy_REQ({}, of);
    }
}

TEST_F(StrategyRequestsTest, HostsIdOfTheRequestIsAskedAnew)
{
    const QVariantList arguments{u"u1"_qs, u"S-1"_qs, QVariant()};
    const MessageFields own{{Strategy::strategyID, u"S-1"_qs}, {u"ExtField"_qs, QVariant()}};
    expectRequest(request(VeloxValues::MSEventStopStrategyReq, own, &view, u"u1"_qs));
    call("Vlx_stopStrategy_REQ", arguments, &view);

    EXPECT_CALL(host, VarnelBusinessDataInterface_GetOrloEventMsgIdByStr(Orlo_Keys::EventMsgName::VELOX_TRANS_MSG_IN))
        .Times(testing::AtLeast(1))
        .WillRepeatedly(testing::Return(99));
    MessageFields fields = request(VeloxValues::MSEventStopStrategyReq, own, &view, u"u1"_qs);
    fields[1].second = 99;
    EXPECT_CALL(host, QvPresenterClass_PutEvent(start.pid, IsMessage(QVariant(99), start.pid, fields)));
    call("Vlx_stopStrategy_REQ", arguments, &view);
}

class StrategySubscriptionsTest : public StrategiesTest {
protected:
    StrategySubscriptionsTest() { center->reg(&view); }

    /// A page's call for the messages of that id; any sub type but "1" ends it.
    void subscribe(RecordingView &of, const QVariant &id, const QVariant &subType = u"1"_qs)
    {
        EXPECT_CALL(host, QvPresenterClass_PutEvent(start.pid, testing::_)).RetiresOnSaturation();
        call("Vlx_subStrategyMsg_REQ", {u"u1"_qs, id, subType}, &of);
    }

    /// What the view gets of one custom message.
    QStringList received(RecordingView &of, const QVariantMap &row)
    {
        of.clear();
        answer(VeloxValues::MSEventStrategyCustomMsg, row);
        return textsOf(of.eventsAfterDraining());
    }

    static QVariantMap message(const QVariant &id, const QVariant &text)
    {
        return {{VeloxFields::strategyCustomMsgID, id}, {VeloxFields::strategyCustomMsg, text}};
    }

    const QString customInfo = u"on_vlxRcvCustomInfo"_qs;
    RecordingView view;
};

TEST_F(StrategySubscriptionsTest, CustomMessageIsTwoTextsAndNoEnvelope)
{
    subscribe(view, u"m1"_qs);
    log.clear();
    EXPECT_THAT(received(view, message(u"m1"_qs, u"{\"a\":1}"_qs)), ElementsAre(customInfo, u"m1"_qs, u"{\"a\":1}"_qs));
    EXPECT_THAT(received(view, message(u"m1"_qs, 1.5)), ElementsAre(customInfo, u"m1"_qs, u"1.5"_qs));
    EXPECT_THAT(received(view, {{VeloxFields::strategyCustomMsgID, u"m1"_qs}}),
                ElementsAre(customInfo, u"m1"_qs, QString()));
    EXPECT_THAT(received(view, message(u"m1"_qs, QVariantMap{{u"a"_qs, 1}})),
                ElementsAre(customInfo, u"m1"_qs, QString()));
    EXPECT_EQ(log.linesWith(u"parse"_qs).size(), 0);
}

TEST_F(StrategySubscriptionsTest, MessagesNobodyWantsGoNowhere)
{
    subscribe(view, u"m1"_qs);
    for (const QString &id : {u"m2"_qs, u"M1"_qs, QString()})
        EXPECT_THAT(received(view, message(id, u"text"_qs)), IsEmpty());
}

TEST_F(StrategySubscriptionsTest, MessageWithoutAnIdGoesToWhoWantsTheEmptyOne)
{
    subscribe(view, QVariant());
    EXPECT_THAT(received(view, {}), ElementsAre(customInfo, QString(), QString()));
}

TEST_F(StrategySubscriptionsTest, OnlyTheTextOneAdds)
{
    for (const QVariant &subType : {QVariant(u"0"_qs), QVariant(u"2"_qs), QVariant(u"01"_qs), QVariant(u" 1"_qs),
                                    QVariant(QString()), QVariant(), QVariant(true), QVariant(QVariantList{1})}) {
        subscribe(view, u"m1"_qs, subType);
        EXPECT_THAT(received(view, message(u"m1"_qs, u"x"_qs)), IsEmpty()) << qPrintable(subType.toString());
        subscribe(view, u"m1"_qs, 1);
        EXPECT_EQ(received(view, message(u"m1"_qs, u"x"_qs)).size(), 3);
        subscribe(view, u"m1"_qs, subType); // and takes away again
        EXPECT_THAT(received(view, message(u"m1"_qs, u"x"_qs)), IsEmpty()) << qPrintable(subType.toString());
    }
}

TEST_F(StrategySubscriptionsTest, SecondSubscriptionKeepsOneEntry)
{
    subscribe(view, u"m1"_qs);
    subscribe(view, u"m1"_qs);
    center->reg(&view); // even when it is registered twice
    EXPECT_THAT(received(view, message(u"m1"_qs, u"x"_qs)), ElementsAre(customInfo, u"m1"_qs, u"x"_qs));
    subscribe(view, u"m1"_qs, u"0"_qs);
    EXPECT_THAT(received(view, message(u"m1"_qs, u"x"_qs)), IsEmpty());
}

TEST_F(StrategySubscriptionsTest, ViewsAreServedInTheOrderOfTheirSubscription)
{
    RecordingView views[3];
    for (RecordingView &each : views)
        center->reg(&each);
    for (RecordingView *each : {&views[2], &views[0], &views[1]})
        subscribe(*each, u"m1"_qs);
    subscribe(views[0], u"m2"_qs);
    subscribe(views[0], u"m1"_qs); // keeps its place
    answer(VeloxValues::MSEventStrategyCustomMsg, message(u"m1"_qs, u"x"_qs));
    EXPECT_EQ(receivers(RecordingView::eventsOfAllViews()), (QList<const QCefView *>{&views[2], &views[0], &views[1]}));
    EXPECT_THAT(view.events(), IsEmpty());
    for (RecordingView &each : views)
        center->unReg(&each);
}

TEST_F(StrategySubscriptionsTest, AreEnteredAfterTheRequestWasSent)
{
    EXPECT_CALL(host, QvPresenterClass_PutEvent(start.pid, testing::_)).WillOnce([this] {
        answer(VeloxValues::MSEventStrategyCustomMsg, message(u"m1"_qs, u"too early"_qs));
    });
    call("Vlx_subStrategyMsg_REQ", {u"u1"_qs, u"m1"_qs, u"1"_qs}, &view);
    EXPECT_THAT(view.eventsAfterDraining(), IsEmpty());
    EXPECT_EQ(received(view, message(u"m1"_qs, u"x"_qs)).size(), 3);
}

TEST_F(StrategySubscriptionsTest, OutliveTheRegistrationAndTheQuoteSubscriptions)
{
    RecordingView other;
    center->reg(&other); // so that the registry is never empty
    subscribe(view, u"m1"_qs);
    center->unsubscribeAll(&view);
    EXPECT_EQ(received(view, message(u"m1"_qs, u"x"_qs)).size(), 3);
    center->unReg(&view);
    EXPECT_THAT(received(view, message(u"m1"_qs, u"x"_qs)), IsEmpty());
    center->reg(&view);
    EXPECT_EQ(received(view, message(u"m1"_qs, u"x"_qs)).size(), 3);
    center->unReg(&other);
}

TEST_F(StrategySubscriptionsTest, OfAViewThatIsGoneAreNeverFollowed)
{
    auto closing = std::make_unique<RecordingView>();
    subscribe(*closing, u"m1"_qs);
    closing.reset();
    subscribe(view, u"m1"_qs);
    EXPECT_THAT(received(view, message(u"m1"_qs, u"x"_qs)), ElementsAre(customInfo, u"m1"_qs, u"x"_qs));
}

TEST_F(StrategySubscriptionsTest, OfNoViewAreHarmless)
{
    EXPECT_CALL(host, QvPresenterClass_PutEvent(start.pid, testing::_));
    call("Vlx_subStrategyMsg_REQ", {u"u1"_qs, u"m1"_qs, u"1"_qs}, nullptr);
    EXPECT_THAT(received(view, message(u"m1"_qs, u"x"_qs)), IsEmpty());
}

TEST_F(StrategySubscriptionsTest, MessagesOfTheBusThreadAreSentOnTheOwnersThread)
{
    subscribe(view, u"m1"_qs);
    BusThread bus;
    bus.run([this] { answer(VeloxValues::MSEventStrategyCustomMsg, message(u"m1"_qs, u"x"_qs)); });
    EXPECT_THAT(view.events(), IsEmpty());
    ASSERT_TRUE(view.waitForEvent(customInfo));
    EXPECT_EQ(view.events().first().thread, QThread::currentThread());
}

} // namespace
