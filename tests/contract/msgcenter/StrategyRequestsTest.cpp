#include "StrategiesTest.h"

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

} // namespace
