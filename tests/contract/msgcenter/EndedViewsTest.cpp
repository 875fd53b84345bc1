#include "LogHook.h"
#include "StrategiesTest.h"
#include "ViewPlace.h"

#include "HostQuotes.h"

#include <memory>

using testing::_;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Return;

namespace {

using namespace Varnel_Fields;

/// The three calls that the strategy platform answers.
const struct StrategyCall {
    const char *method;
    int arguments;
    QString answer;
    QString reply;
    QString refusal;
} strategyCalls[] = {
    {"Vlx_startStrategy_REQ", 6, VeloxValues::MSEventStartStrategyRsp, u"Vlx_startStrategy_RES"_qs,
     u"WebMsgCenter::parseVlxStartResponse pointer error"_qs},
    {"Vlx_stopStrategy_REQ", 3, VeloxValues::MSEventStopStrategyRsp, u"Vlx_stopStrategy_RES"_qs,
     u"WebMsgCenter::parseVlxStopResponse pointer error"_qs},
    {"Vlx_queryStrategyStatus_REQ", 3, VeloxValues::MSEventQueryStrategyStatusRsp, u"Vlx_queryStrategyStatus_RES"_qs,
     u"WebMsgCenter::parseVlxQueryStatusResponse pointer error"_qs},
};

/// Everything that is kept for a view is dropped with it, although the host has not unregistered the view.
class EndedViewsTest : public StrategiesTest {
protected:
    EndedViewsTest()
    {
        EXPECT_CALL(host, CommonQuotaHandler_SubscribeQuota(_, true, 0))
            .Times(testing::AnyNumber())
            .WillRepeatedly(Return(0));
        EXPECT_CALL(host, QvPresenterClass_PutEvent(start.pid, _)).Times(testing::AnyNumber());
        center->reg(&other);
    }
    ~EndedViewsTest() override { center->unReg(&other); }

    RecordingView &renewRegistered()
    {
        RecordingView &view = place.renew();
        center->reg(&view);
        return view;
    }

    void callStrategy(const StrategyCall &each, const QString &uuid, VarnelCefView *view)
    {
        QVariantList arguments{uuid};
        while (arguments.size() < each.arguments)
            arguments << u"x"_qs;
        call(each.method, arguments, view);
    }

    void answerStrategy(const StrategyCall &each, const QString &uuid, VarnelCefView *view)
    {
        answer(each.answer, {{u"panelPtr"_qs, QVariant::fromValue(view)},
                             {u"uuid"_qs, uuid},
                             {Tessar_Fields::System::textDescription, u"0"_qs}});
    }

    static QVariantMap customMessage(const QString &id)
    {
        return {{VeloxFields::strategyCustomMsgID, id}, {VeloxFields::strategyCustomMsg, u"text"_qs}};
    }

    const QVariantMap quote{{u"last"_qs, 7.25}};
    RecordingView other;
    ViewPlace place;
};

TEST_F(EndedViewsTest, LeaveTheRegistry)
{
    RecordingView &view = renewRegistered();
    center->reg(&view); // both entries
    place.end();
    log.clear();
    deliver(0x30001, {});
    EXPECT_THAT(logged(), ElementsAre(logText("WebMsgCenter::ProcEventMsg", 1, 0x30001)));
    EXPECT_EQ(receivers(RecordingView::eventsOfAllViews()), QList<const QCefView *>{&other});
}

TEST_F(EndedViewsTest, LeaveTheRegistryAlsoWhenTheirSignalsAreBlocked)
{
    renewRegistered().blockSignals(true);
    place.end();
    deliver(0x30001, {});
    EXPECT_EQ(receivers(RecordingView::eventsOfAllViews()), QList<const QCefView *>{&other});
}

TEST_F(EndedViewsTest, LeaveTheRegistryToTheViewsThatAreLeft)
{
    RecordingView &view = renewRegistered();
    auto third = std::make_unique<RecordingView>();
    center->reg(third.get());
    place.end();
    deliver(0x30001, {});
    EXPECT_EQ(receivers(RecordingView::eventsOfAllViews()), (QList<const QCefView *>{&other, third.get()}));
    center->unReg(&view); // a host that comes too late does no harm
    third.reset();
    RecordingView::clearAllViews();
    deliver(0x30001, {});
    EXPECT_EQ(receivers(RecordingView::eventsOfAllViews()), QList<const QCefView *>{&other});
}

TEST_F(EndedViewsTest, LeaveNoTicksToTheNextViewAtTheirAddress)
{
    for (const bool wasRegistered : {true, false}) {
        RecordingView &view = place.renew();
        if (wasRegistered)
            center->reg(&view);
        center->subscribe(&view, u"u1"_qs, {u"S"_qs, u"T"_qs});
        center->unsubscribe(&view, u"u2"_qs, {u"T"_qs});

        RecordingView &next = renewRegistered();
        ASSERT_EQ(&next, &view);
        emitTick(u"S"_qs, quote);
        EXPECT_THAT(next.eventsAfterDraining(), IsEmpty()) << wasRegistered;

        center->subscribe(&next, u"u3"_qs, {u"S"_qs});
        next.clear();
        emitTick(u"S"_qs, quote);
        EXPECT_THAT(next.eventNames(), ElementsAre(u"on_tickUpdate"_qs)) << wasRegistered;
    }
}

TEST_F(EndedViewsTest, LeaveNoCustomMessagesToTheNextViewAtTheirAddress)
{
    call("Vlx_subStrategyMsg_REQ", {u"u0"_qs, u"m1"_qs, u"1"_qs}, &other);
    RecordingView &view = place.renew();
    for (const QString &id : {u"m1"_qs, u"m2"_qs})
        call("Vlx_subStrategyMsg_REQ", {u"u1"_qs, id, u"1"_qs}, &view);

    RecordingView &next = renewRegistered();
    for (const QString &id : {u"m1"_qs, u"m2"_qs})
        answer(VeloxValues::MSEventStrategyCustomMsg, customMessage(id));
    EXPECT_THAT(next.eventsAfterDraining(), IsEmpty());
    EXPECT_THAT(other.eventNames(), ElementsAre(u"on_vlxRcvCustomInfo"_qs));

    call("Vlx_subStrategyMsg_REQ", {u"u2"_qs, u"m2"_qs, u"1"_qs}, &next);
    answer(VeloxValues::MSEventStrategyCustomMsg, customMessage(u"m2"_qs));
    EXPECT_THAT(next.eventNames(), ElementsAre(u"on_vlxRcvCustomInfo"_qs));
}

TEST_F(EndedViewsTest, LeaveNoAnswersToTheNextViewAtTheirAddress)
{
    for (const StrategyCall &each : strategyCalls) {
        callStrategy(each, u"u1"_qs, &renewRegistered());
        RecordingView &next = renewRegistered();
        log.clear();
        answerStrategy(each, u"u1"_qs, &next);
        EXPECT_THAT(next.eventsAfterDraining(), IsEmpty());
        EXPECT_EQ(logged().value(1), each.refusal); // the first line is the intake's
    }
}

TEST_F(EndedViewsTest, LeaveNoAnswersThatCrossFromTheBusThread)
{
    callStrategy(strategyCalls[0], u"u1"_qs, &renewRegistered());
    RecordingView &next = renewRegistered();
    BusThread bus;
    bus.run([&] { answerStrategy(strategyCalls[0], u"u1"_qs, &next); });
    EXPECT_THAT(next.eventsAfterDraining(), IsEmpty());
}

TEST_F(EndedViewsTest, LeaveTheNextViewItsOwnAnswers)
{
    for (const StrategyCall &each : strategyCalls) {
        callStrategy(each, u"u1"_qs, &renewRegistered());
        RecordingView &next = renewRegistered();
        callStrategy(each, u"u2"_qs, &next);
        answerStrategy(each, u"u2"_qs, &next);
        answerStrategy(each, u"u1"_qs, &next);
        EXPECT_THAT(next.eventNames(), ElementsAre(each.reply));

        // Answers that nobody asked for are delivered.
        next.clear();
        answerStrategy(each, u"u2"_qs, &next);
        answerStrategy(each, u"u3"_qs, &next);
        EXPECT_THAT(next.eventNames(), ElementsAre(each.reply, each.reply));
    }
}

TEST_F(EndedViewsTest, TakeTheFirstAnswerWhenTheNextViewRepeatsACallIdentifier)
{
    for (const StrategyCall &each : strategyCalls) {
        callStrategy(each, u"u1"_qs, &renewRegistered());
        RecordingView &next = renewRegistered();
        callStrategy(each, u"u1"_qs, &next);
        answerStrategy(each, u"u1"_qs, &next);
        EXPECT_THAT(next.eventsAfterDraining(), IsEmpty());
        answerStrategy(each, u"u1"_qs, &next);
        EXPECT_THAT(next.eventNames(), ElementsAre(each.reply));
    }
}

TEST_F(EndedViewsTest, TakeOnlyTheAnswersOfTheirOwnKind)
{
    callStrategy(strategyCalls[0], u"u1"_qs, &renewRegistered());
    RecordingView &next = renewRegistered();
    answerStrategy(strategyCalls[1], u"u1"_qs, &next);
    EXPECT_THAT(next.eventNames(), ElementsAre(strategyCalls[1].reply));
}

TEST_F(EndedViewsTest, TakeNoAnswerThatTheirPageHasHad)
{
    RecordingView &view = renewRegistered();
    callStrategy(strategyCalls[0], u"u1"_qs, &view);
    answerStrategy(strategyCalls[0], u"u1"_qs, &view);
    EXPECT_THAT(view.eventNames(), ElementsAre(strategyCalls[0].reply));
    RecordingView &next = renewRegistered();
    answerStrategy(strategyCalls[0], u"u1"_qs, &next);
    EXPECT_THAT(next.eventNames(), ElementsAre(strategyCalls[0].reply));
}

TEST_F(EndedViewsTest, AnswerThatFindsNoViewIsTheirLast)
{
    callStrategy(strategyCalls[0], u"u1"_qs, &renewRegistered());
    VarnelCefView *const address = &place.renew();
    answerStrategy(strategyCalls[0], u"u1"_qs, address); // not registered yet
    center->reg(address);
    answerStrategy(strategyCalls[0], u"u1"_qs, address);
    EXPECT_EQ(receivers(RecordingView::eventsOfAllViews()), QList<const QCefView *>{address});
}

TEST_F(EndedViewsTest, TakeNoAnswerFromTheNextViewWhenTheirsWasDroppedWithoutAView)
{
    for (const StrategyCall &each : strategyCalls) {
        callStrategy(each, u"u1"_qs, &renewRegistered());
        callStrategy(each, u"u2"_qs, &renewRegistered());
        place.end();
        center->unReg(&other);
        answerStrategy(each, u"u1"_qs, nullptr); // no view is registered: dropped unread
        center->reg(&other);

        RecordingView &next = renewRegistered();
        callStrategy(each, u"u1"_qs, &next);
        answerStrategy(each, u"u1"_qs, &next);
        EXPECT_THAT(next.eventNames(), ElementsAre(each.reply));

        // The answers that still come belong to the ended views all the same.
        next.clear();
        answerStrategy(each, u"u1"_qs, &next);
        answerStrategy(each, u"u2"_qs, &next);
        EXPECT_THAT(next.eventsAfterDraining(), IsEmpty());
    }
}

TEST_F(EndedViewsTest, AreRememberedForTheLastFourThousandCalls)
{
    constexpr int remembered = 4096;
    RecordingView &view = renewRegistered();
    for (int i = 0; i <= remembered; ++i)
        callStrategy(strategyCalls[2], u"u%1"_qs.arg(i), &view);
    RecordingView &next = renewRegistered();
    for (int i = 0; i <= remembered; ++i)
        answerStrategy(strategyCalls[2], u"u%1"_qs.arg(i), &next);
    // Only the answer to the oldest call, which is forgotten, so that it counts as an answer that nobody asked for.
    ASSERT_EQ(next.events().size(), 1);
    EXPECT_TRUE(textsOf(next.events()).value(1).endsWith(uR"("uuid":"u0"})"_qs));
}

TEST_F(EndedViewsTest, LivingViewThatRegistersAgainLosesNothing)
{
    RecordingView &view = renewRegistered();
    center->subscribe(&view, u"u1"_qs, {u"S"_qs});
    call("Vlx_subStrategyMsg_REQ", {u"u2"_qs, u"m1"_qs, u"1"_qs}, &view);
    callStrategy(strategyCalls[0], u"u3"_qs, &view);
    center->unReg(&view);
    center->reg(&view);
    view.clear();
    emitTick(u"S"_qs, quote);
    answer(VeloxValues::MSEventStrategyCustomMsg, customMessage(u"m1"_qs));
    answerStrategy(strategyCalls[0], u"u3"_qs, &view);
    EXPECT_THAT(view.eventNames(), ElementsAre(u"on_tickUpdate"_qs, u"on_vlxRcvCustomInfo"_qs, strategyCalls[0].reply));
}

TEST_F(EndedViewsTest, ViewThatEndsWhileTheHostSubscribesKeepsNothing)
{
    RecordingView &view = renewRegistered();
    EXPECT_CALL(host, CommonQuotaHandler_SubscribeQuota(_, true, 0)).WillOnce([this] {
        place.end();
        return 0;
    });
    center->subscribe(&view, u"u1"_qs, {u"S"_qs});
    RecordingView &next = renewRegistered();
    emitTick(u"S"_qs, quote);
    EXPECT_THAT(RecordingView::eventsOfAllViews(), IsEmpty());
    EXPECT_THAT(next.eventsAfterDraining(), IsEmpty());
}

TEST_F(EndedViewsTest, ViewThatEndsWhileTheBusTakesItsSubscriptionKeepsNothing)
{
    RecordingView &view = renewRegistered();
    EXPECT_CALL(host, QvPresenterClass_PutEvent(start.pid, _)).WillOnce([this] { place.end(); });
    call("Vlx_subStrategyMsg_REQ", {u"u1"_qs, u"m1"_qs, u"1"_qs}, &view);
    RecordingView &next = renewRegistered();
    answer(VeloxValues::MSEventStrategyCustomMsg, customMessage(u"m1"_qs));
    EXPECT_THAT(next.eventsAfterDraining(), IsEmpty());
}

TEST_F(EndedViewsTest, ViewThatEndsWhileTheBusTakesItsCallLeavesNoAnswer)
{
    for (const StrategyCall &each : strategyCalls) {
        RecordingView &view = renewRegistered();
        EXPECT_CALL(host, QvPresenterClass_PutEvent(start.pid, _)).WillOnce([this] { place.end(); });
        callStrategy(each, u"u1"_qs, &view);
        RecordingView &next = renewRegistered();
        answerStrategy(each, u"u1"_qs, &next);
        EXPECT_THAT(next.eventsAfterDraining(), IsEmpty());
    }
}

TEST_F(EndedViewsTest, AnswerMayComeBeforeTheCallReturns)
{
    for (const StrategyCall &each : strategyCalls) {
        RecordingView &view = renewRegistered();
        EXPECT_CALL(host, QvPresenterClass_PutEvent(start.pid, _)).WillOnce([&] {
            answerStrategy(each, u"u1"_qs, &view);
        });
        callStrategy(each, u"u1"_qs, &view);
        EXPECT_THAT(view.eventNames(), ElementsAre(each.reply));
        RecordingView &next = renewRegistered(); // nothing is left under way
        answerStrategy(each, u"u1"_qs, &next);
        EXPECT_THAT(next.eventNames(), ElementsAre(each.reply));
    }
}

TEST_F(EndedViewsTest, OrdersLoadedNoticeGoesToTheViewsThatItsLogLineCounts)
{
    RecordingView late;
    {
        const LogHook hook([&](const QString &message) {
            if (message.startsWith(u"WebMsgCenter::ProcEventMsg"_qs))
                center->reg(&late);
        });
        log.clear();
        deliver(0x30001, {});
    }
    EXPECT_THAT(logged(), ElementsAre(logText("WebMsgCenter::ProcEventMsg", 1, 0x30001)));
    EXPECT_EQ(receivers(RecordingView::eventsOfAllViews()), QList<const QCefView *>{&other});
}

} // namespace
