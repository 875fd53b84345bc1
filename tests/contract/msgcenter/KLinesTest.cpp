#include "msgcenter/WebMsgCenter.h"

#include "HostTest.h"
#include "KLineMessages.h"
#include "LogRecorder.h"

#include <QSignalSpy>
#include <QThread>

using testing::_;
using testing::DoAll;
using testing::Return;
using testing::SetArgReferee;

namespace {

QVariantMap candle(const QString &requestId, int n)
{
    return {{Tessar_Fields::System::clientMsgID, requestId}, {QStringLiteral("n"), n}};
}

void deliver(const QVariant &type, const QVariant &data)
{
    HostBus::deliverQuotation(QStringLiteral("quotes"), type, data);
}

class KLinesTest : public HostTest {
protected:
    KLinesTest()
    {
        start.dataDispatchers = 0;
        expectStart(start);
        center = WebMsgCenter::instance();
    }

    auto isRequest(int period) const { return isKLineRequest(start.pid, period); }

    HostStart start;
    WebMsgCenter *center = nullptr;
};

TEST_F(KLinesTest, AsyncRequestSetsItsIdBeforeItIsSentAndPassesTheResultOn)
{
    const QString id = nextClientMessageId();
    QString clientMsgID = QStringLiteral("before");
    QString idWhenSent;
    EXPECT_CALL(host, QvPresenterClass_sendRequest_Async(isRequest(2))).WillOnce([&](const MessageRecord &request) {
        idWhenSent = clientMsgID;
        EXPECT_EQ(request.clientMsgId, clientMsgID);
        return -17;
    });
    const LogRecorder log;
    EXPECT_EQ(center->asyncRequestKLineData(kLineSymbol, kLineFrom, kLineTo, DayKLinePeriod, clientMsgID), -17);
    EXPECT_EQ(clientMsgID, id);
    EXPECT_EQ(idWhenSent, id);
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(KLinesTest, EachRequestHasAnIdOfItsOwn)
{
    EXPECT_CALL(host, QvPresenterClass_sendRequest_Async(isRequest(1))).Times(2).WillRepeatedly(Return(0));
    QString a;
    QString b;
    EXPECT_EQ(center->asyncRequestKLineData(kLineSymbol, kLineFrom, kLineTo, MinuteKLinePeriod, a), 0);
    EXPECT_EQ(center->asyncRequestKLineData(kLineSymbol, kLineFrom, kLineTo, MinuteKLinePeriod, b), 0);
    EXPECT_NE(a, b);
}

TEST_F(KLinesTest, PeriodIsPassedThroughWhateverItIs)
{
    constexpr int other = 3; // neither minutes nor days, and the largest value that the type can hold
    EXPECT_CALL(host, QvPresenterClass_sendRequest_Async(isRequest(other))).WillOnce(Return(0));
    QString id;
    center->asyncRequestKLineData(kLineSymbol, kLineFrom, kLineTo, EMD_KLINE_PERIOD(other), id);
}

TEST_F(KLinesTest, SyncRequestReturnsTheCandlesInOrder)
{
    EXPECT_CALL(host, QvPresenterClass_sendRequest_Sync(isRequest(1), _))
        .WillOnce(DoAll(
            SetArgReferee<1>(QVariant(QVariantList{candle(QStringLiteral("x"), 1), candle(QStringLiteral("x"), 2), 7})),
            Return(0)));
    QList<QVariantMap> data{candle(QStringLiteral("old"), 0)};
    EXPECT_EQ(center->syncRequestKLineData(kLineSymbol, kLineFrom, kLineTo, MinuteKLinePeriod, data), 0);
    EXPECT_EQ(data, (QList<QVariantMap>{candle(QStringLiteral("x"), 1), candle(QStringLiteral("x"), 2), {}}));
}

TEST_F(KLinesTest, SyncRequestThatFailsLeavesTheCallersList)
{
    EXPECT_CALL(host, QvPresenterClass_sendRequest_Sync(isRequest(1), _))
        .WillOnce(DoAll(SetArgReferee<1>(QVariant(QVariantList{candle(QStringLiteral("x"), 1)})), Return(3)));
    QList<QVariantMap> data{candle(QStringLiteral("old"), 0)};
    EXPECT_EQ(center->syncRequestKLineData(kLineSymbol, kLineFrom, kLineTo, MinuteKLinePeriod, data), 3);
    EXPECT_EQ(data, QList<QVariantMap>{candle(QStringLiteral("old"), 0)});
}

TEST_F(KLinesTest, SyncRequestWithoutCandlesEmptiesTheCallersList)
{
    // The empty list, none at all, and what is no list.
    for (const QVariant &reply : {QVariant(QVariantList()), QVariant(), QVariant(QStringLiteral("text"))}) {
        EXPECT_CALL(host, QvPresenterClass_sendRequest_Sync(isRequest(1), _))
            .WillOnce(DoAll(SetArgReferee<1>(reply), Return(0)));
        QList<QVariantMap> data{candle(QStringLiteral("old"), 0)};
        EXPECT_EQ(center->syncRequestKLineData(kLineSymbol, kLineFrom, kLineTo, MinuteKLinePeriod, data), 0);
        EXPECT_TRUE(data.isEmpty());
    }
}

TEST_F(KLinesTest, AnswerIsSignalledWithTheIdOfItsFirstCandle)
{
    QSignalSpy spy(center, &WebMsgCenter::signalKLineDataRcv);
    deliver(QStringLiteral("KLineResponse"),
            QVariantList{candle(QStringLiteral("one"), 1), candle(QStringLiteral("two"), 2), QStringLiteral("no map")});
    ASSERT_EQ(spy.size(), 1);
    EXPECT_EQ(spy.first().at(0).toString(), QStringLiteral("one"));
    EXPECT_EQ(spy.first().at(1).value<QList<QVariantMap>>(),
              (QList<QVariantMap>{candle(QStringLiteral("one"), 1), candle(QStringLiteral("two"), 2), {}}));
}

TEST_F(KLinesTest, AnswerWhoseFirstCandleNamesNoRequestIsSignalledWithTheEmptyId)
{
    QSignalSpy spy(center, &WebMsgCenter::signalKLineDataRcv);
    deliver(QStringLiteral("KLineResponse"), QVariantList{QVariantMap(), candle(QStringLiteral("two"), 2)});
    ASSERT_EQ(spy.size(), 1);
    EXPECT_EQ(spy.first().at(0).toString(), QString());
}

TEST_F(KLinesTest, MessagesOfOtherTypesAndEmptyAnswersAreDropped)
{
    QSignalSpy spy(center, &WebMsgCenter::signalKLineDataRcv);
    const LogRecorder log;
    const QVariantList one{candle(QStringLiteral("one"), 1)};
    for (const QVariant &type : {QVariant(QStringLiteral("KLineRequest")), QVariant(QStringLiteral("klineresponse")),
                                 QVariant(QString()), QVariant(), QVariant(7), QVariant(QVariantMap())}) {
        deliver(type, one);
    }
    for (const QVariant &nothing : {QVariant(QVariantList()), QVariant(), QVariant(QVariantMap()),
                                    QVariant(QStringLiteral("text")), QVariant(3)}) {
        deliver(QStringLiteral("KLineResponse"), nothing);
    }
    EXPECT_TRUE(spy.isEmpty());
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(KLinesTest, AnswerOfTheBusThreadCrossesToQueuedReceivers)
{
    // A type that is not registered would be dropped here, with a warning only.
    QObject receiver;
    QList<QVariantMap> received;
    QThread *thread = nullptr;
    QObject::connect(center, &WebMsgCenter::signalKLineDataRcv, &receiver,
                     [&](const QString &, const QList<QVariantMap> &data) {
                         received = data;
                         thread = QThread::currentThread();
                     });
    BusThread bus;
    bus.run([] { deliver(QStringLiteral("KLineResponse"), QVariantList{candle(QStringLiteral("id"), 5)}); });
    EXPECT_TRUE(received.isEmpty());
    QCoreApplication::processEvents();
    EXPECT_EQ(received, QList<QVariantMap>{candle(QStringLiteral("id"), 5)});
    EXPECT_EQ(thread, receiver.thread());
}

} // namespace
