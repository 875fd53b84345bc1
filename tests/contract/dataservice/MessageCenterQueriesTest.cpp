#include "DataServiceTest.h"

#include "OwnAccount.h"
#include "msgcenter/KLineMessages.h"

#include "Algo_Fields.h"
#include "Algo_Values.h"
#include "Varnel_Fields.h"

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
        start.loginAccount = account.name;
        start.permissions = {{{Varnel_Fields::FastFocus::fundAccount, u"f1"_qs},
                              {Algo_Fields::VarnelStrategy::supportType, Algo_Values::SupprotType::KFZ_SNB}}};
        expectStart(start);
    }

    /// Asks for a permission while the host says that permissions are loaded.
    QString permission(const QString &fundAccount, const QString &supportType)
    {
        EXPECT_CALL(host, VarnelInitStateMgr_IsInited(u"SnbBindInit"_qs)).WillOnce(Return(true)).RetiresOnSaturation();
        return process->processGetPermission(u"u1"_qs, fundAccount, supportType);
    }

    /// Asks for minute candles; the bus answers with this status and answer.
    QString candles(int status, const QVariant &answer)
    {
        EXPECT_CALL(host, QvPresenterClass_sendRequest_Sync(isKLineRequest(start.pid, 1), _))
            .WillOnce(DoAll(SetArgReferee<1>(answer), Return(status)));
        return process->processKLineData(u"u1"_qs, kLineSymbol, kLineFrom, kLineTo, MinuteKLinePeriod);
    }

    const OwnAccount account;
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

TEST_F(MessageCenterQueriesTest, SettingThatWasNeverSavedIsTheEmptyText)
{
    EXPECT_EQ(process->processGetSetting(u"u1"_qs, u"never"_qs), successReply(u"\"\""_qs));
    EXPECT_TRUE(log.lines().isEmpty());
    EXPECT_EQ(process->processGetSetting(u"u1"_qs, QString()), successReply(u"\"\""_qs)); // Qt says that it is empty
}

TEST_F(MessageCenterQueriesTest, SettingIsReadAsItWasSaved)
{
    EXPECT_EQ(process->processSaveSetting(u"u1"_qs, u"k"_qs, u"first"_qs), successReply(u"\"\""_qs));
    EXPECT_EQ(process->processSaveSetting(u"u1"_qs, u"k"_qs, u"值\"\n{}"_qs), successReply(u"\"\""_qs));
    EXPECT_EQ(process->processGetSetting(u"u1"_qs, u"k"_qs), successReply(uR"("值\"\n{}")"_qs));
    EXPECT_EQ(process->processGetSetting(u"u1"_qs, u"other"_qs), successReply(u"\"\""_qs));
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(MessageCenterQueriesTest, SavingIsASuccessAlsoWhenNothingCouldBeSaved)
{
    EXPECT_EQ(process->processSaveSetting(u"u1"_qs, QString(), u"v"_qs), successReply(u"\"\""_qs));
    EXPECT_EQ(process->processGetSetting(u"u1"_qs, QString()), successReply(u"\"\""_qs));
}

TEST_F(MessageCenterQueriesTest, PermissionIsANumberAndNoBoolean)
{
    EXPECT_EQ(permission(u"f1"_qs, u"KFZ;SNB"_qs), successReply(u"1"_qs));
    EXPECT_EQ(permission(u"f1"_qs, u"unknown"_qs), successReply(u"0"_qs));
    EXPECT_EQ(permission(u"unknown"_qs, u"KFZ;SNB"_qs), successReply(u"0"_qs));
    EXPECT_EQ(permission(u"KFZ;SNB"_qs, u"f1"_qs), successReply(u"0"_qs)); // fund account first
    EXPECT_EQ(permission(QString(), QString()), successReply(u"0"_qs));
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(MessageCenterQueriesTest, PermissionMenuIsOpenedWhateverThePageSays)
{
    EXPECT_CALL(host, BaseBusinessDataInterface_OpenMenuTabByMenuID(u"1210"_qs)).Times(2);
    EXPECT_EQ(process->processOpenPermissionMenu(u"u1"_qs), successReply(u"\"\""_qs));
    EXPECT_EQ(process->processOpenPermissionMenu(QString()), successReply(u"\"\""_qs, QString()));
    EXPECT_TRUE(log.lines().isEmpty());
    // Nothing of this needs the message center; it is started for the fixture's expectations.
    EXPECT_EQ(process->processGetSetting(u"u1"_qs, u"k"_qs), successReply(u"\"\""_qs));
}

} // namespace
