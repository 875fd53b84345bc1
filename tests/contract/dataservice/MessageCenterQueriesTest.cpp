#include "DataServiceTest.h"

#include "msgcenter/KLineMessages.h"

using testing::_;
using testing::DoAll;
using testing::Return;
using testing::SetArgReferee;

namespace {

class MessageCenterQueriesTest : public DataServiceTest {
protected:
    MessageCenterQueriesTest()
    {
        start.dataDispatchers = 0;
        expectStart(start);
    }

    /// Asks for minute candles while the bus answers so.
    QString candles(int status, const QVariant &answer)
    {
        EXPECT_CALL(host, QvPresenterClass_sendRequest_Sync(isKLineRequest(start.pid, 1), _))
            .WillOnce(DoAll(SetArgReferee<1>(answer), Return(status)));
        return process->processKLineData(u"u1"_qs, kLineSymbol, kLineFrom, kLineTo, MinuteKLinePeriod);
    }

    HostStart start;
};

TEST_F(MessageCenterQueriesTest, CandlesAreTheResultInTheirOrder)
{
    const QVariantList answer{QVariantMap{{u"close"_qs, 7.25}, {u"name"_qs, u"浦江\"𝄞"_qs}}, u"no map"_qs,
                              QVariantMap{{u"close"_qs, QVariant()}}};
    EXPECT_EQ(candles(0, answer), successReply(uR"([{"close":7.25,"name":"浦江\"𝄞"},{},{"close":null}])"_qs));
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(MessageCenterQueriesTest, NoCandlesAreNoFailure)
{
    for (const QVariant &answer : {QVariant(QVariantList()), QVariant(), QVariant(u"text"_qs)})
        EXPECT_EQ(candles(0, answer), successReply(u"[]"_qs));
}

TEST_F(MessageCenterQueriesTest, RequestThatFailsIsAnsweredWithAnEmptyList)
{
    const QString failed = uR"({"code":"-1","msg":"query failed","resultData":[],"uuid":"u1"})"_qs;
    for (const int status : {-1, 1, 77}) {
        EXPECT_EQ(candles(status, QVariant()), failed);
        EXPECT_EQ(candles(status, QVariantList{QVariantMap{{u"close"_qs, 7.25}}}), failed); // nobody trusts these
    }
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(MessageCenterQueriesTest, PeriodIsPassedThroughWhateverItIs)
{
    for (const int period : {2, 0, 3}) {
        EXPECT_CALL(host, QvPresenterClass_sendRequest_Sync(isKLineRequest(start.pid, period), _)).WillOnce(Return(0));
        EXPECT_EQ(process->processKLineData(u"u1"_qs, kLineSymbol, kLineFrom, kLineTo, EMD_KLINE_PERIOD(period)),
                  successReply(u"[]"_qs));
    }
}

} // namespace
