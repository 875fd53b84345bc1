#include "EventsTest.h"

#include "Tessar_Values.h"
#include "Varnel_Fields.h"
#include "Varnel_Values.h"
#include "dataservice/DataProcess.h"

#include <QSignalSpy>

#include <algorithm>
#include <memory>
#include <vector>

using testing::_;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Return;

namespace {

using namespace Tessar_Fields;

const QString assetUpdate = u"on_AssetUpdate"_qs;
const QString positionUpdate = u"on_positionUpdate"_qs;
const QString orderLoaded = u"on_orderLoaded"_qs;

const QVariantMap position{{Security::symbol, u"S"_qs}, {u"any field"_qs, 1}};

class AssetEventsTest : public EventsTest {
protected:
    void expectAccountsOfTrade(const QString &tradingAccount, const QList<tagUserAccountInfo> &accounts)
    {
        EXPECT_CALL(host, VarnelBusinessDataInterface_GetAccountInfoListFromTrade(tradingAccount, true))
            .WillOnce(Return(accounts));
    }
};

TEST_F(AssetEventsTest, PushTheAssetsOfTheFirstFundAccount)
{
    const testing::InSequence order;
    expectAccountsOfTrade(u"t1"_qs, {{u"f1"_qs, u"name"_qs, u"t1"_qs}, {u"f2"_qs, u"other"_qs, u"t1"_qs}});
    expectAccounts(host, u"f1"_qs, {{u"f1"_qs, u"账户一"_qs, u"t9"_qs}});
    EXPECT_CALL(host, CBusinessDataBase_GetAccountDetailsByTradinngAccount(u"t9"_qs))
        .WillOnce(Return(QVariantMap{{Varnel_Fields::NormalFundEx::assetBalance, 1234.5}}));
    EXPECT_CALL(host, CBusinessDataBase_getTradeAccountParam(u"t9"_qs, Tessar_Values::Currency::CNY))
        .WillOnce(Return(QVariantMap()));
    EXPECT_CALL(host, VarnelBusinessDataInterface_GetAccountAssetPropByTradingAccount(u"t9"_qs))
        .WillOnce(Return(Varnel_Values::FundAccountType::Future));

    deliver(assetEvent, {{UserAccount::tradingAccount, u"t1"_qs}});
    EXPECT_THAT(textsOf(view.events()),
                ElementsAre(assetUpdate, uR"({"closePosProfitDate":"0.00","closePosProfitTrade":"0.00",)"
                                         uR"("fetchableCash":"0.00","floatingProfit":"0.00","fundAccount":"f1",)"
                                         uR"("fundAccountName":"账户一","holdingCost":"0.00","marketValue":"0.00",)"
                                         uR"("profit":"0.00","totalAsset":"1234.50","tradableCash":"0.00"})"_qs));
    EXPECT_THAT(logged(), ElementsAre(intakeLine(1, assetEvent)));
}

TEST_F(AssetEventsTest, OfAnAccountThatTheHostDoesNotKnowPushTheEmptyText)
{
    const testing::InSequence order;
    const struct {
        QVariantMap row;
        QString asked;
    } rows[] = {{{{UserAccount::tradingAccount, u"unknown"_qs}}, u"unknown"_qs},
                {{}, QString()},
                {{{UserAccount::tradingAccount, 7}}, u"7"_qs},
                {{{UserAccount::tradingAccount, QVariantMap()}}, QString()}};
    for (const auto &each : rows) {
        view.clear();
        expectAccountsOfTrade(each.asked, {});
        deliver(assetEvent, each.row);
        EXPECT_THAT(textsOf(view.events()), ElementsAre(assetUpdate, QString()));
    }
}

TEST_F(AssetEventsTest, OfAnUnknownFundAccountPushAnEmptyObject)
{
    expectAccountsOfTrade(u"t1"_qs, {{u"f1"_qs, u"name"_qs, u"t1"_qs}});
    expectAccounts(host, u"f1"_qs, {});
    deliver(assetEvent, {{UserAccount::tradingAccount, u"t1"_qs}});
    EXPECT_THAT(textsOf(view.events()), ElementsAre(assetUpdate, u"{}"_qs));
}

TEST_F(AssetEventsTest, AreNotBatched)
{
    EXPECT_CALL(host, VarnelBusinessDataInterface_GetAccountInfoListFromTrade(_, true))
        .Times(3)
        .WillRepeatedly(Return(QList<tagUserAccountInfo>()));
    for (int i = 1; i <= 3; ++i) {
        deliver(assetEvent, {});
        EXPECT_EQ(view.events().size(), i);
    }
}

TEST_F(EventsTest, PositionIsPushedAtOnceAsTheServicePackagesIt)
{
    const testing::InSequence order;
    expectPosition(host, position, u"S"_qs);
    const QString text = DataProcess::instance()->getPositionMsg(position);
    EXPECT_TRUE(text.contains(u"\"cost\":\"value of cost\""_qs)) << qPrintable(text);

    for (int i = 1; i <= 2; ++i) {
        expectPosition(host, position, u"S"_qs);
        deliver(positionEvent, position);
        ASSERT_EQ(view.events().size(), i);
    }
    EXPECT_THAT(textsOf(view.events()), ElementsAre(positionUpdate, text, positionUpdate, text));
}

TEST_F(EventsTest, OrdersLoadedIsBroadcastOnTheCallersThreadWithoutAnArgument)
{
    RecordingView second;
    center->reg(&second);
    center->reg(&view); // a second time
    RecordingView unregistered;
    QSignalSpy taken(center, &WebMsgCenter::signalParseEventMsg);
    BusThread bus;
    bus.run([] { deliver(ordersLoadedEvent, {{u"any field"_qs, 1}}); });

    const QList<ViewEvent> all = RecordingView::eventsOfAllViews();
    EXPECT_EQ(receivers(all), (QList<const QCefView *>{&view, &second, &view}));
    for (const ViewEvent &event : all) {
        EXPECT_EQ(event.name, orderLoaded);
        EXPECT_TRUE(event.arguments.isEmpty());
        EXPECT_EQ(event.thread, bus.qtThread());
    }
    EXPECT_EQ(view.eventsAfterDraining().size(), 2);
    EXPECT_TRUE(taken.isEmpty());
    EXPECT_THAT(logged(), ElementsAre(intakeLine(3, ordersLoadedEvent)));
    center->unReg(&second);
}

TEST_F(EventsTest, WithoutAViewEveryKindIsDroppedAndLogged)
{
    center->unReg(&view);
    QSignalSpy taken(center, &WebMsgCenter::signalParseEventMsg);
    for (const int type : {assetEvent, orderEvent, changedOrderEvent, executionEvent, strategyExecutionEvent,
                           positionEvent, ordersLoadedEvent}) {
        log.clear();
        deliver(type, position);
        EXPECT_THAT(logged(), ElementsAre(intakeLine(0, type), u"WebMsgCenter::ProcEventMsg object empty"_qs));
    }
    log.clear();
    expectStrategyIdAsked(1);
    deliver(start.strategyOutEventId, position);
    EXPECT_THAT(logged(),
                ElementsAre(intakeLine(0, start.strategyOutEventId), u"WebMsgCenter::ProcEventMsg object empty"_qs));
    EXPECT_TRUE(taken.isEmpty());
    EXPECT_TRUE(view.eventsAfterDraining().isEmpty());
}

TEST_F(EventsTest, UnknownIdIsIgnoredAfterTheStrategyIdWasAsked)
{
    QSignalSpy taken(center, &WebMsgCenter::signalParseEventMsg);
    for (const QVariant &type :
         {QVariant(0x30002), QVariant(0), QVariant(-1), QVariant(), QVariant(u"asset"_qs), QVariant(QVariantMap())}) {
        log.clear();
        expectStrategyIdAsked(1);
        deliver(type, position);
        EXPECT_THAT(logged(), ElementsAre(intakeLine(1, type.toInt())));
    }
    center->unReg(&view);
    log.clear();
    expectStrategyIdAsked(1);
    deliver(77, position);
    EXPECT_THAT(logged(), ElementsAre(intakeLine(0, 77)));
    EXPECT_TRUE(taken.isEmpty());
    EXPECT_TRUE(view.eventsAfterDraining().isEmpty());
}

TEST_F(EventsTest, StrategyIdIsAskedAnewForEveryStrategyEvent)
{
    expectStrategyIdAsked(2); // when it is taken in, and when it is handled
    deliver(start.strategyOutEventId, {});

    start.strategyOutEventId = 77; // another id from now on
    expectStrategyIdAsked(2);
    deliver(77, {});
    EXPECT_THAT(logged(), ElementsAre(intakeLine(1, 0x5A5A5), intakeLine(1, 77)));
}

TEST_F(EventsTest, IdMayComeAsAText)
{
    expectPosition(host, position, u"S"_qs);
    deliver(u"200706"_qs, position);
    EXPECT_THAT(view.eventNames(), ElementsAre(positionUpdate));
    EXPECT_THAT(logged(), ElementsAre(intakeLine(1, positionEvent)));
}

TEST_F(EventsTest, FirstRowOfTheBodyIsTakenAndATypePassedOnAsItIs)
{
    QSignalSpy taken(center, &WebMsgCenter::signalParseEventMsg);
    expectPosition(host, position, u"S"_qs);
    HostBus::deliverEvent(u"any name"_qs, u"200706"_qs, packedRows({position, {{u"second"_qs, 2}}}));
    ASSERT_EQ(taken.size(), 1);
    EXPECT_THAT(taken.first().at(0).value<QVariant>(), Identical(QVariant(u"200706"_qs)));
    EXPECT_THAT(taken.first().at(1).toMap(), Identical(position));
}

TEST_F(EventsTest, BodyThatCannotBeUnpackedIsAnEmptyRow)
{
    QSignalSpy taken(center, &WebMsgCenter::signalParseEventMsg);
    for (const QVariant &body : {QVariant(), QVariant(u"text"_qs), QVariant(QVariantMap(position)), packedRows({})}) {
        EXPECT_CALL(host, VarnelBusinessDataInterface_GetAccountInfoListFromTrade(QString(), true))
            .WillOnce(Return(QList<tagUserAccountInfo>()));
        HostBus::deliverEvent(QString(), int(assetEvent), body);
        EXPECT_THAT(taken.takeFirst().at(1).toMap(), IsEmpty());
    }
}

TEST_F(EventsTest, AreHandledOnTheOwnersThread)
{
    QThread *handled = nullptr;
    EXPECT_CALL(host, VarnelBusinessDataInterface_GetAccountInfoListFromTrade(u"t1"_qs, true)).WillOnce([&] {
        handled = QThread::currentThread();
        return QList<tagUserAccountInfo>();
    });
    BusThread bus;
    bus.run([] { deliver(assetEvent, {{UserAccount::tradingAccount, u"t1"_qs}}); });
    EXPECT_EQ(handled, nullptr);
    EXPECT_TRUE(view.events().isEmpty());

    ASSERT_TRUE(view.waitForEvent(assetUpdate));
    EXPECT_EQ(handled, QThread::currentThread());
    EXPECT_EQ(view.events().first().thread, QThread::currentThread());
}

TEST_F(EventsTest, ThatArriveBeforeTheLastViewUnregistersArePushedToNobody)
{
    EXPECT_CALL(host, VarnelBusinessDataInterface_GetAccountInfoListFromTrade(_, true))
        .WillOnce(Return(QList<tagUserAccountInfo>()));
    BusThread bus;
    bus.run([] { deliver(assetEvent, {}); });
    center->unReg(&view);
    EXPECT_TRUE(view.eventsAfterDraining().isEmpty());
}

TEST_F(EventsTest, PushesReachEveryRegisteredViewInTheOrderOfRegistration)
{
    RecordingView views[3];
    center->unReg(&view);
    for (RecordingView *each : {&views[1], &views[2], &views[0], &views[2]})
        center->reg(each);
    EXPECT_CALL(host, VarnelBusinessDataInterface_GetAccountInfoListFromTrade(_, true))
        .WillOnce(Return(QList<tagUserAccountInfo>()));
    deliver(assetEvent, {});
    EXPECT_EQ(receivers(RecordingView::eventsOfAllViews()),
              (QList<const QCefView *>{&views[1], &views[2], &views[0], &views[2]}));
    for (RecordingView &each : views)
        center->unReg(&each);
}

TEST_F(EventsTest, BroadcastThatAViewRefusesDoesNotKeepItFromTheOthers)
{
    RecordingView other;
    center->reg(&other);
    view.answerBroadcasts(false);
    EXPECT_CALL(host, VarnelBusinessDataInterface_GetAccountInfoListFromTrade(_, true))
        .WillOnce(Return(QList<tagUserAccountInfo>()));
    deliver(assetEvent, {});
    deliver(ordersLoadedEvent, {});
    EXPECT_THAT(other.eventNames(), ElementsAre(assetUpdate, orderLoaded));
    EXPECT_THAT(view.eventNames(), ElementsAre(assetUpdate, orderLoaded));
    center->unReg(&other);
}

TEST_F(EventsTest, AssetDetailSignalIsNeverEmitted)
{
    QSignalSpy detail(center, &WebMsgCenter::signalAssetDetailChanged);
    EXPECT_CALL(host, VarnelBusinessDataInterface_GetAccountInfoListFromTrade(_, true))
        .WillOnce(Return(QList<tagUserAccountInfo>()));
    EXPECT_CALL(host, VarnelEntrustReportGen_fillLineData(_, _, _, _, _)).Times(2).WillRepeatedly(Return(true));
    EXPECT_CALL(host, VarnelDealReportGen_fillLineData(_, _, _, _, _)).Times(2).WillRepeatedly(Return(true));
    expectPosition(host, position, u"S"_qs);
    for (const int type : {assetEvent, orderEvent, changedOrderEvent, executionEvent, strategyExecutionEvent,
                           positionEvent, ordersLoadedEvent})
        deliver(type, position);
    EXPECT_EQ(view.eventsAfterDraining().size(), 3);
    EXPECT_TRUE(detail.isEmpty());
}

TEST_F(EventsTest, OfTheBusThreadAreSafeWhileTheRegistryChanges)
{
    // Every notice must find a whole registry: the view that stays registered gets each of them.
    constexpr int count = 500;
    std::vector<std::unique_ptr<RecordingView>> passing(20);
    std::generate(passing.begin(), passing.end(), std::make_unique<RecordingView>);
    log.clear();
    BusThread bus;
    bus.post([] {
        for (int i = 0; i < count; ++i)
            deliver(ordersLoadedEvent, {});
    });
    for (int round = 0; round < 50; ++round) {
        for (const auto &each : passing)
            center->reg(each.get());
        for (const auto &each : passing)
            center->unReg(each.get());
    }
    bus.wait();
    EXPECT_EQ(view.events().size(), count);
}

} // namespace
