#include "StrategiesTest.h"

#include <memory>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using namespace Tessar_Fields;
using namespace Varnel_Fields;

/// The three answers that go to the page that asked.
const struct Answer {
    QString subEvent;
    QString event;
    QString operation;
} answers[] = {
    {VeloxValues::MSEventStartStrategyRsp, u"Vlx_startStrategy_RES"_qs, u"parseVlxStartResponse"_qs},
    {VeloxValues::MSEventStopStrategyRsp, u"Vlx_stopStrategy_RES"_qs, u"parseVlxStopResponse"_qs},
    {VeloxValues::MSEventQueryStrategyStatusRsp, u"Vlx_queryStrategyStatus_RES"_qs, u"parseVlxQueryStatusResponse"_qs},
};

class StrategyAnswersTest : public StrategiesTest {
protected:
    StrategyAnswersTest() { center->reg(&view); }

    /// An answer for the view with all its fields.
    QVariantMap row(const QVariant &text = u"0"_qs)
    {
        return {{u"panelPtr"_qs, pointerTo(&view)},
                {u"uuid"_qs, u"u9"_qs},
                {u"ExtField"_qs, QVariantMap{{u"a"_qs, QVariantList{1, QVariant()}}}},
                {Strategy::strategyID, u"S-1"_qs},
                {Strategy::strategyStatus, u"running"_qs},
                {System::textDescription, text}};
    }

    static QVariant pointerTo(VarnelCefView *of) { return QVariant::fromValue(of); }

    /// Answers with that pointer must log "pointer error" and send nothing.
    void expectRefused(const QVariantMap &fields)
    {
        for (const Answer &each : answers) {
            log.clear();
            answer(each.subEvent, fields);
            ASSERT_EQ(logged().size(), 2); // the first is the intake's
            EXPECT_EQ(logged().at(1), u"WebMsgCenter::%1 pointer error"_qs.arg(each.operation));
        }
        EXPECT_THAT(RecordingView::eventsOfAllViews(), IsEmpty());
    }

    RecordingView view;
};

TEST_F(StrategyAnswersTest, ReachThePageThatAsked)
{
    RecordingView other;
    center->reg(&other);
    center->reg(&view); // registered twice, answered once
    for (const Answer &each : answers) {
        view.clear();
        answer(each.subEvent, row());
        EXPECT_THAT(textsOf(view.events()),
                    ElementsAre(each.event, successReply(uR"({"ExtField":{"a":[1,null]},"strategyID":"S-1",)"
                                                         uR"("strategyStatus":"running"})"_qs,
                                                         u"u9"_qs)));
        EXPECT_EQ(view.events().first().thread, QThread::currentThread());
    }
    EXPECT_THAT(other.eventsAfterDraining(), IsEmpty());
    EXPECT_EQ(log.linesWith(u"parse"_qs).size(), 0);
    center->unReg(&other);
}

TEST_F(StrategyAnswersTest, AnyDescriptionButZeroIsAFailureWithThatMessage)
{
    const struct {
        QVariant sent;
        QString text;
    } reasons[] = {{u"策略不存在"_qs, u"策略不存在"_qs},
                   {QString(), QString()},
                   {QVariant(), QString()},
                   {u"00"_qs, u"00"_qs},
                   {u"0 "_qs, u"0 "_qs},
                   {u"0.0"_qs, u"0.0"_qs},
                   {1, u"1"_qs},
                   {false, u"false"_qs},
                   {QVariantMap(), QString()}};
    for (const Answer &each : answers) {
        for (const auto &reason : reasons) {
            view.clear();
            answer(each.subEvent, row(reason.sent));
            EXPECT_THAT(
                textsOf(view.events()),
                ElementsAre(each.event,
                            uR"({"code":"-1","msg":"%1","resultData":{"ExtField":{"a":[1,null]},)"
                            uR"("strategyID":"S-1","strategyStatus":"running"},"uuid":"u9"})"_qs.arg(reason.text)));
        }
        view.clear();
        answer(each.subEvent, row(0)); // the number reads as the text
        EXPECT_TRUE(textsOf(view.events()).value(1).startsWith(uR"({"code":"0","msg":"",)"_qs));
    }
}

TEST_F(StrategyAnswersTest, FieldsThatAreAbsentAreEmpty)
{
    for (const Answer &each : answers) {
        view.clear();
        answer(each.subEvent, {{u"panelPtr"_qs, pointerTo(&view)}});
        const QStringList event = textsOf(view.events());
        ASSERT_EQ(event.size(), 2);
        EXPECT_EQ(event.at(0), each.event);
        const QJsonObject reply = QJsonDocument::fromJson(event.at(1).toUtf8()).object();
        EXPECT_EQ(reply.value(u"code"_qs), u"-1"_qs);
        EXPECT_EQ(reply.value(u"msg"_qs), QString());
        EXPECT_EQ(reply.value(u"uuid"_qs), QString());
        EXPECT_EQ(resultOf(event.at(1)).toObject().value(u"strategyID"_qs), QString());
        EXPECT_TRUE(resultOf(event.at(1)).toObject().value(u"ExtField"_qs).isNull());
    }
}

TEST_F(StrategyAnswersTest, ValuesAreReadAsTextsAndTheExtensionPassesUnchanged)
{
    QVariantMap fields = row();
    fields.insert(u"uuid"_qs, 7);
    fields.insert(Strategy::strategyID, 8);
    for (const auto &extension : {QVariant(1.5), QVariant(u"\"𝄞\n"_qs), QVariant(true), QVariant(QVariantList())}) {
        view.clear();
        fields.insert(u"ExtField"_qs, extension);
        answer(VeloxValues::MSEventStopStrategyRsp, fields);
        const QString reply = textsOf(view.events()).value(1);
        EXPECT_TRUE(reply.endsWith(uR"("uuid":"7"})"_qs)) << qPrintable(reply);
        EXPECT_EQ(resultOf(reply).toObject().value(u"strategyID"_qs), u"8"_qs);
        EXPECT_EQ(resultOf(reply).toObject().value(u"ExtField"_qs), QJsonValue::fromVariant(extension));
    }
}

TEST_F(StrategyAnswersTest, ForAViewThatUnregisteredAreRefused)
{
    RecordingView other;
    center->reg(&other);
    center->unReg(&view);
    expectRefused(row());
    center->unReg(&other);
}

TEST_F(StrategyAnswersTest, ForAViewThatIsGoneAreRefusedWithoutFollowingThePointer)
{
    auto closing = std::make_unique<RecordingView>();
    QVariantMap fields = row();
    fields.insert(u"panelPtr"_qs, pointerTo(closing.get()));
    closing.reset();
    expectRefused(fields);
}

TEST_F(StrategyAnswersTest, WithoutAViewPointerAreRefused)
{
    QVariantMap fields = row();
    fields.remove(u"panelPtr"_qs);
    expectRefused(fields);
}

TEST_F(StrategyAnswersTest, WithAPointerOfAnotherTypeAreRefused)
{
    QObject object;
    QVariantMap fields = row();
    for (const QVariant &wrong :
         {QVariant(), QVariant(u"pointer"_qs), QVariant(quintptr(&view)), QVariant(QString::number(quintptr(&view))),
          QVariant(QVariantMap(row())), QVariant(QVariantList{pointerTo(&view)}), QVariant::fromValue(&object),
          QVariant::fromValue(static_cast<void *>(&view)), QVariant::fromValue(nullptr), pointerTo(nullptr)}) {
        fields.insert(u"panelPtr"_qs, wrong);
        expectRefused(fields);
    }
}

TEST_F(StrategyAnswersTest, OfOtherKindsAreIgnored)
{
    for (const QString &subEvent : {VeloxValues::MSEventStartStrategyReq, VeloxValues::MSEventStopStrategyReq,
                                    VeloxValues::MSEventQueryStrategyStatusReq, VeloxValues::MSEventSubStrategyMsg,
                                    QString(), u"unknown"_qs, VeloxValues::MSEventStartStrategyRsp.toUpper()}) {
        log.clear();
        answer(subEvent, row());
        EXPECT_EQ(logged().size(), 1); // the intake's
    }
    deliver(start.strategyOutEventId, row()); // of no kind at all
    EXPECT_THAT(view.eventsAfterDraining(), IsEmpty());
}

TEST_F(StrategyAnswersTest, OfTheBusThreadAreSentOnTheOwnersThreadIfTheViewIsStillThere)
{
    RecordingView stays;
    center->reg(&stays);
    QVariantMap forStays = row();
    forStays.insert(u"panelPtr"_qs, pointerTo(&stays));
    BusThread bus;
    bus.run([&] {
        answer(VeloxValues::MSEventStartStrategyRsp, row());
        answer(VeloxValues::MSEventStartStrategyRsp, forStays);
    });
    EXPECT_THAT(RecordingView::eventsOfAllViews(), IsEmpty());
    center->unReg(&view);
    ASSERT_TRUE(stays.waitForEvent(u"Vlx_startStrategy_RES"_qs));
    EXPECT_EQ(stays.events().first().thread, QThread::currentThread());
    EXPECT_THAT(view.eventsAfterDraining(), IsEmpty());
    EXPECT_EQ(log.linesWith(u"WebMsgCenter::parseVlxStartResponse pointer error"_qs).size(), 1);
    center->unReg(&stays);
}

class StrategyStatusTest : public StrategyAnswersTest {
protected:
    const QString statusUpdate = u"on_vlxStrategyStatusUpdate"_qs;
};

TEST_F(StrategyStatusTest, UpdateIsTwoTextsForEveryRegisteredView)
{
    RecordingView other;
    center->reg(&other);
    center->reg(&view);
    answer(VeloxValues::MSEventStrategyStatusUpdate,
           {{Strategy::strategyID, u"S-1"_qs}, {Strategy::strategyStatus, u"停止"_qs}});
    EXPECT_EQ(receivers(RecordingView::eventsOfAllViews()), (QList<const QCefView *>{&view, &other, &view}));
    EXPECT_THAT(textsOf(other.events()), ElementsAre(statusUpdate, u"S-1"_qs, u"停止"_qs));
    EXPECT_EQ(log.linesWith(u"parse"_qs).size(), 0);
    center->unReg(&other);
}

TEST_F(StrategyStatusTest, UpdateReadsItsValuesAsTexts)
{
    answer(VeloxValues::MSEventStrategyStatusUpdate, {{Strategy::strategyID, 7}, {Strategy::strategyStatus, 2}});
    answer(VeloxValues::MSEventStrategyStatusUpdate, {});
    answer(VeloxValues::MSEventStrategyStatusUpdate,
           {{Strategy::strategyID, QVariantMap()}, {Strategy::strategyStatus, QVariantList{1}}});
    EXPECT_THAT(textsOf(view.events()), ElementsAre(statusUpdate, u"7"_qs, u"2"_qs, statusUpdate, QString(), QString(),
                                                    statusUpdate, QString(), QString()));
}

TEST_F(StrategyStatusTest, UpdateWithoutARegisteredViewIsLogged)
{
    BusThread bus;
    bus.run([this] { answer(VeloxValues::MSEventStrategyStatusUpdate, {{Strategy::strategyID, u"S-1"_qs}}); });
    center->unReg(&view); // between intake and handling
    log.clear();
    EXPECT_THAT(view.eventsAfterDraining(), IsEmpty());
    EXPECT_THAT(logged(), ElementsAre(u"WebMsgCenter::parseVlxRcvStrategyStatusUpdate object empty"_qs));
}

} // namespace
