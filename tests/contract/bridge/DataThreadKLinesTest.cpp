#include "bridge/DataThread.h"

#include "HostTest.h"
#include "LogRecorder.h"
#include "RecordingView.h"
#include "ThreadGate.h"

#include "Tessar_Fields.h"

#include <memory>

using testing::_;
using testing::Return;

namespace {

const QString responseName = QStringLiteral("Data_getKLineData_RES");

QVariantList candles(const QString &requestId, int count = 1)
{
    QVariantList list;
    for (int i = 0; i < count; ++i)
        list.append(QVariantMap{{Tessar_Fields::System::clientMsgID, requestId}, {QStringLiteral("n"), i}});
    return list;
}

QString reply(const QString &uuid, const QString &requestId, int count = 1)
{
    QStringList records;
    for (int i = 0; i < count; ++i)
        records << QStringLiteral(R"({"%1":"%2","n":%3})").arg(Tessar_Fields::System::clientMsgID, requestId).arg(i);
    return QStringLiteral(R"({"code":"0","msg":"","resultData":[%1],"uuid":"%2"})")
        .arg(records.join(QLatin1Char(',')), uuid);
}

class DataThreadKLinesTest : public HostTest {
protected:
    DataThreadKLinesTest()
    {
        HostStart start;
        start.dataDispatchers = 2;
        expectStart(start);
        first = new DataThread(&firstView);
        second = new DataThread(&secondView);
    }

    static QVariantList arguments(const QString &uuid, const QVariant &period = QStringLiteral("1"))
    {
        return {uuid, QStringLiteral("sym"), QStringLiteral("from"), QStringLiteral("to"), period};
    }

    /// Asks for candles and returns the id of the request.
    QString ask(DataThread *dispatcher, const QString &uuid)
    {
        const QString requestId = nextClientMessageId();
        EXPECT_CALL(host, QvPresenterClass_sendRequest_Async(_)).WillOnce(Return(0)).RetiresOnSaturation();
        EXPECT_TRUE(dispatcher->onInvokeMethod(0, 0, QStringLiteral("Data_getKLineData_REQ"), arguments(uuid)));
        return requestId;
    }

    static void answer(const QString &requestId, int count = 1)
    {
        HostBus::deliverQuotation(QStringLiteral("quotes"), QStringLiteral("KLineResponse"), candles(requestId, count));
    }

    RecordingView firstView;
    RecordingView secondView;
    DataThread *first = nullptr;
    DataThread *second = nullptr;
};

TEST_F(DataThreadKLinesTest, NothingIsSentBeforeTheAnswerComes)
{
    const QString id = ask(first, QStringLiteral("u1"));
    EXPECT_TRUE(firstView.eventsAfterDraining().isEmpty());

    answer(id, 3);
    ASSERT_EQ(firstView.events().size(), 1);
    EXPECT_EQ(firstView.events().first().name, responseName);
    EXPECT_EQ(firstView.events().first().arguments, QVariantList{reply(QStringLiteral("u1"), id, 3)});
}

TEST_F(DataThreadKLinesTest, TextsAndPeriodReachTheRequest)
{
    const struct {
        QVariant flag;
        int period;
    } periods[] = {{QStringLiteral("1"), 1}, {1, 1},          {QStringLiteral("01"), 2}, {QString(), 2},
                   {QStringLiteral("2"), 2}, {QVariant(), 2}, {QStringLiteral(" 1"), 2}, {1.5, 2}};
    for (const auto &period : periods) {
        MessageRecord request;
        EXPECT_CALL(host, QvPresenterClass_sendRequest_Async(_))
            .WillOnce(testing::DoAll(testing::SaveArg<0>(&request), Return(0)))
            .RetiresOnSaturation();
        EXPECT_TRUE(first->onInvokeMethod(0, 0, QStringLiteral("Data_getKLineData_REQ"),
                                          arguments(QStringLiteral("u"), period.flag)));
        ASSERT_EQ(request.fields.size(), 6);
        EXPECT_EQ(request.fields.at(0).second, QVariant(QStringLiteral("sym")));
        EXPECT_EQ(request.fields.at(1).second, QVariant(QStringLiteral("from")));
        EXPECT_EQ(request.fields.at(2).second, QVariant(QStringLiteral("to")));
        EXPECT_EQ(request.fields.at(4).second, QVariant(period.period)) << qPrintable(period.flag.toString());
    }
}

TEST_F(DataThreadKLinesTest, TwoViewsWithRequestsInFlightEachGetOnlyTheirOwn)
{
    const QString firstId = ask(first, QStringLiteral("same uuid"));
    const QString secondId = ask(second, QStringLiteral("same uuid"));
    answer(secondId);
    answer(firstId);
    ASSERT_EQ(firstView.eventsAfterDraining().size(), 1);
    ASSERT_EQ(secondView.events().size(), 1);
    EXPECT_EQ(firstView.events().first().arguments, QVariantList{reply(QStringLiteral("same uuid"), firstId)});
    EXPECT_EQ(secondView.events().first().arguments, QVariantList{reply(QStringLiteral("same uuid"), secondId)});
}

TEST_F(DataThreadKLinesTest, OneViewPairsSeveralRequestsInAnyOrder)
{
    const QString a = ask(first, QStringLiteral("a"));
    const QString b = ask(first, QStringLiteral("b"));
    answer(b);
    answer(a);
    ASSERT_EQ(firstView.events().size(), 2);
    EXPECT_EQ(firstView.events().at(0).arguments, QVariantList{reply(QStringLiteral("b"), b)});
    EXPECT_EQ(firstView.events().at(1).arguments, QVariantList{reply(QStringLiteral("a"), a)});
}

TEST_F(DataThreadKLinesTest, UnknownRequestIdentifierSendsNothing)
{
    answer(QStringLiteral("stranger"));
    const QString id = ask(first, QStringLiteral("u1"));
    answer(QStringLiteral("stranger"));
    EXPECT_TRUE(firstView.eventsAfterDraining().isEmpty());
    answer(id);
    EXPECT_EQ(firstView.events().size(), 1);
}

TEST_F(DataThreadKLinesTest, SecondAnswerForTheSameRequestSendsNothing)
{
    const QString id = ask(first, QStringLiteral("u1"));
    answer(id);
    answer(id);
    EXPECT_EQ(firstView.eventsAfterDraining().size(), 1);
}

TEST_F(DataThreadKLinesTest, AnswerFromTheBusThreadIsSentOnTheThreadOfTheView)
{
    const QString id = ask(first, QStringLiteral("u1"));
    BusThread bus;
    bus.run([&id] { answer(id, 2); });
    EXPECT_TRUE(firstView.events().isEmpty());
    ASSERT_TRUE(firstView.waitForEvent(responseName));
    EXPECT_EQ(firstView.events().first().thread, QThread::currentThread());
    EXPECT_EQ(firstView.events().first().arguments, QVariantList{reply(QStringLiteral("u1"), id, 2)});
}

TEST_F(DataThreadKLinesTest, AnswerWithoutAViewSendsNothingAndForgetsTheRequest)
{
    const QString id = ask(first, QStringLiteral("u1"));
    first->setView(nullptr);
    answer(id);
    first->setView(&firstView);
    answer(id);
    EXPECT_TRUE(firstView.eventsAfterDraining().isEmpty());
}

TEST_F(DataThreadKLinesTest, RequestIsSentWithoutAViewToo)
{
    first->setView(nullptr);
    const QString id = ask(first, QStringLiteral("u1"));
    first->setView(&firstView);
    answer(id);
    EXPECT_EQ(firstView.events().size(), 1);
}

TEST_F(DataThreadKLinesTest, TooFewArgumentsGetNoReplyAtAll)
{
    QVariantList args;
    for (int count = 0; count < 5; ++count, args.append(QStringLiteral("1")))
        EXPECT_TRUE(first->onInvokeMethod(0, 0, QStringLiteral("Data_getKLineData_REQ"), args)) << count;
    EXPECT_TRUE(firstView.eventsAfterDraining().isEmpty());
}

TEST_F(DataThreadKLinesTest, RequestThatCouldNotBeSentStillWaits)
{
    const QString id = nextClientMessageId();
    EXPECT_CALL(host, QvPresenterClass_sendRequest_Async(_)).WillOnce(Return(-5));
    EXPECT_TRUE(first->onInvokeMethod(0, 0, QStringLiteral("Data_getKLineData_REQ"), arguments(QStringLiteral("u"))));
    EXPECT_TRUE(firstView.eventsAfterDraining().isEmpty());
    answer(id);
    EXPECT_EQ(firstView.events().size(), 1);
}

TEST_F(DataThreadKLinesTest, RequestOfADispatcherThatWentIsDropped)
{
    const QString id = ask(first, QStringLiteral("u1"));
    delete first;
    answer(id);
    EXPECT_TRUE(firstView.eventsAfterDraining().isEmpty());
}

TEST_F(DataThreadKLinesTest, CandlesOfEveryKindOfValueReachThePage)
{
    const QString id = ask(first, QStringLiteral("u1"));
    HostBus::deliverQuotation(QString(), QStringLiteral("KLineResponse"),
                              QVariantList{QVariantMap{{Tessar_Fields::System::clientMsgID, id},
                                                       {QStringLiteral("a"), 0.1},
                                                       {QStringLiteral("b"), QVariant()},
                                                       {QStringLiteral("c"), qlonglong(1234567890123)},
                                                       {QStringLiteral("d"), QString::fromUtf8("\"𝄞\n")}},
                                           QStringLiteral("no map")});
    ASSERT_EQ(firstView.events().size(), 1);
    const QString text = firstView.events().first().arguments.first().toString();
    EXPECT_TRUE(text.contains(QStringLiteral(R"("a":0.1,"b":null,"c":1234567890123,"d":"\"𝄞\n",)")))
        << qPrintable(text);
    EXPECT_TRUE(text.contains(QStringLiteral("},{}]"))) << qPrintable(text);
}

class ParentlessKLinesTest : public HostTest {};

TEST_F(ParentlessKLinesTest, AnswerIsSentOnTheDispatchersOwnThread)
{
    expectStart();
    EXPECT_CALL(host, QvPresenterClass_sendRequest_Async(_)).WillOnce(Return(0));
    RecordingView view;
    ThreadGate gate;
    DataThread dispatcher(nullptr);
    dispatcher.setView(&view);
    gate.hold(dispatcher.thread());
    const QString id = nextClientMessageId();
    EXPECT_TRUE(dispatcher.onInvokeMethod(0, 0, QStringLiteral("Data_getKLineData_REQ"),
                                          {QStringLiteral("u1"), QString(), QString(), QString(), QString()}));
    // Queued behind the call, which is still waiting.
    HostBus::deliverQuotation(QString(), QStringLiteral("KLineResponse"), candles(id));
    gate.open();
    ASSERT_TRUE(view.waitForEvent(responseName));
    EXPECT_EQ(view.events().first().thread, dispatcher.thread());
    EXPECT_EQ(view.events().first().arguments, QVariantList{reply(QStringLiteral("u1"), id)});
}

} // namespace
