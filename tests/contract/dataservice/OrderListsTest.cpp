#include "DataServiceTest.h"

#include "Tessar_Fields.h"
#include "Varnel_Fields.h"

#include <QLoggingCategory>

using testing::_;
using testing::DoAll;
using testing::InSequence;
using testing::IsEmpty;
using testing::Return;
using testing::SetArgReferee;
using testing::WithArgs;

namespace {

using namespace Tessar_Fields;

const QString refused = refusal(u"过滤条件参数转换错误"_qs);

class OrderListsTest : public DataServiceTest {
protected:
    QVariantMap parsed(const QString &filter)
    {
        return process->parseOrderFilter(QJsonDocument::fromJson(filter.toUtf8()));
    }

    auto &expectOrders(const QVariantMap &keys, int pageArg1 = 0, int pageArg2 = 0)
    {
        return EXPECT_CALL(host, BusinessDataInterface_GetOrderListByCustomKey(
                                     Identical(keys), testing::Eq(0), pageArg1, pageArg2, IsEmpty(), IsEmpty()));
    }

    auto &expectExecutions(const QVariantMap &keys, int pageArg1 = 0, int pageArg2 = 0)
    {
        return EXPECT_CALL(host, BusinessDataInterface_GetExecutionListByCustomKey(Identical(keys), testing::Eq(0),
                                                                                   pageArg1, pageArg2, IsEmpty()));
    }

    QString entrustList(const QVariant &filter) { return process->processEntrustList(u"u1"_qs, filter, 0, 0); }
    QString executionList(const QVariant &filter) { return process->processExecutionList(u"u1"_qs, filter, 0, 0); }
};

// The filter

TEST_F(OrderListsTest, EachListOfTheFilterBecomesTheConditionOfItsHostKey)
{
    const struct {
        const char *pageKey;
        const QString &hostKey;
    } conditions[] = {
        {"symbol", Security::symbol},           {"trader", UserAccount::loginUserId},
        {"orderStatus", Security::orderStatus}, {"orderSource", Varnel_Fields::ETF::UserReference3},
        {"instanceID", Security::algoOrderID},
    };
    const QStringList unchanged{u"b"_qs, u"文"_qs, QString(), u"b"_qs, u" a,b "_qs};
    for (const auto &condition : conditions) {
        EXPECT_THAT(parsed(uR"({"%1":["b","文","","b"," a,b "]})"_qs.arg(QString::fromLatin1(condition.pageKey))),
                    Identical(QVariantMap{{condition.hostKey, unchanged}}))
            << condition.pageKey;
    }
}

TEST_F(OrderListsTest, AllConditionsTogetherKeepTheirOwnValues)
{
    expectAccounts(host, u"f"_qs, {{u"f"_qs, u"name"_qs, u"t"_qs}});
    EXPECT_THAT(parsed(uR"({"instanceID":["6"],"orderSource":["5"],"orderStatus":["4"],"trader":["3"],)"
                       uR"("symbol":["2"],"fundAccount":["f"],"other":["7"],"Symbol":["8"]})"_qs),
                Identical(QVariantMap{{UserAccount::tradingAccount, QStringList{u"t"_qs}},
                                      {Security::symbol, QStringList{u"2"_qs}},
                                      {UserAccount::loginUserId, QStringList{u"3"_qs}},
                                      {Security::orderStatus, QStringList{u"4"_qs}},
                                      {Varnel_Fields::ETF::UserReference3, QStringList{u"5"_qs}},
                                      {Security::algoOrderID, QStringList{u"6"_qs}}}));
}

TEST_F(OrderListsTest, ListsThatAreEmptyOrNoListsAreNoCondition)
{
    for (const char *value : {"[]", "null", "7", "1.5", "true", "{}", R"({"a":"b"})"})
        EXPECT_THAT(parsed(uR"({"symbol":%1,"fundAccount":%1})"_qs.arg(QString::fromUtf8(value))), IsEmpty()) << value;
}

TEST_F(OrderListsTest, SingleTextIsAListOfOneEvenWhenItIsEmpty)
{
    EXPECT_THAT(parsed(uR"({"symbol":"a,b","trader":""})"_qs),
                Identical(QVariantMap{{Security::symbol, QStringList{u"a,b"_qs}},
                                      {UserAccount::loginUserId, QStringList{QString()}}}));
}

TEST_F(OrderListsTest, ElementsThatAreNoTextsBecomeTheirTexts)
{
    EXPECT_THAT(
        parsed(uR"({"symbol":[1,null,true,{},"a"]})"_qs),
        Identical(QVariantMap{{Security::symbol, QStringList{u"1"_qs, QString(), u"true"_qs, QString(), u"a"_qs}}}));
}

TEST_F(OrderListsTest, FilterThatIsNoObjectHasNoConditions)
{
    EXPECT_THAT(parsed(uR"([])"_qs), IsEmpty());
    EXPECT_THAT(parsed(uR"([{"symbol":["a"]}])"_qs), IsEmpty());
    EXPECT_THAT(parsed(QString()), IsEmpty());
}

TEST_F(OrderListsTest, FundAccountsBecomeTheFirstTradingAccountOfEachInTheirOrder)
{
    const InSequence order;
    expectAccounts(host, u"f2"_qs, {{u"x"_qs, u"name"_qs, u"t2"_qs}, {u"f2"_qs, u"name"_qs, u"later"_qs}});
    expectAccounts(host, u"unknown"_qs, {});
    expectAccounts(host, QString(), {});
    expectAccounts(host, u"f1"_qs, {{u"f1"_qs, u"name"_qs, u"t1"_qs}});
    expectAccounts(host, u"f2"_qs, {{u"f2"_qs, u"name"_qs, u"t2"_qs}});
    EXPECT_THAT(parsed(uR"({"fundAccount":["f2","unknown","","f1","f2"],"symbol":[]})"_qs),
                Identical(QVariantMap{{UserAccount::tradingAccount, QStringList{u"t2"_qs, u"t1"_qs, u"t2"_qs}}}));
}

TEST_F(OrderListsTest, FundAccountsWithoutRecordsDoNotRestrictTheQuery)
{
    expectAccounts(host, u"unknown"_qs, {});
    EXPECT_THAT(parsed(uR"({"fundAccount":"unknown"})"_qs), IsEmpty());
}

// The lists

TEST_F(OrderListsTest, OrdersAreAPageOfPackagedRecordsInTheHostsOrder)
{
    const InSequence order;
    const QVariantMap first{{u"n"_qs, 1}};
    const QVariantMap second{{u"n"_qs, 2}};
    expectOrders({{Security::symbol, QStringList{u"S"_qs}}}, -3, 2147483647)
        .WillOnce(DoAll(SetArgReferee<1>(99), Return(QList<QVariantMap>{first, {}, second})));
    for (const QVariantMap &record : {first, QVariantMap(), second}) {
        EXPECT_CALL(host, VarnelEntrustReportGen_fillLineData(Identical(record), _, _, _, false))
            .WillOnce(DoAll(SetArgReferee<1>(QMap<int, QVariantMap>{{7, {{u"256"_qs, record.value(u"n"_qs)}}}}),
                            Return(true)));
    }
    const QString reply = process->processEntrustList(u"u1"_qs, uR"({"symbol":"S"})"_qs, -3, 2147483647);

    const QJsonObject page = resultOf(reply).toObject();
    EXPECT_EQ(page.keys(), (QStringList{u"entrustInfoList"_qs, u"size"_qs, u"totalSize"_qs}));
    EXPECT_EQ(page.value(u"totalSize"_qs), 99);
    EXPECT_EQ(page.value(u"size"_qs), 3);
    const QJsonArray records = page.value(u"entrustInfoList"_qs).toArray();
    ASSERT_EQ(records.size(), 3);
    const QJsonValue prices[] = {1, QJsonValue::Null, 2};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(records.at(i).toObject().size(), 22);
        EXPECT_EQ(records.at(i).toObject().value(u"price"_qs).toObject().value(u"userRole"_qs), prices[i]) << i;
    }
}

TEST_F(OrderListsTest, ExecutionsAreAPageOfPackagedRecords)
{
    const InSequence order;
    const QVariantMap record{{u"n"_qs, 1}};
    expectExecutions({{Security::symbol, QStringList{u"S"_qs}}}, 20, 10)
        .WillOnce(DoAll(SetArgReferee<1>(21), Return(QList<QVariantMap>{record})));
    EXPECT_CALL(host, VarnelDealReportGen_fillLineData(Identical(record), _, _, _, false))
        .WillOnce(WithArgs<1, 2>(fillCells));
    const QString reply = process->processExecutionList(u"u1"_qs, uR"({"symbol":"S"})"_qs, 20, 10);

    const QJsonObject page = resultOf(reply).toObject();
    EXPECT_EQ(page.keys(), (QStringList{u"executionInfoList"_qs, u"size"_qs, u"totalSize"_qs}));
    EXPECT_EQ(page.value(u"totalSize"_qs), 21);
    EXPECT_EQ(page.value(u"size"_qs), 1);
    EXPECT_EQ(page.value(u"executionInfoList"_qs).toArray().first().toObject().size(), 16);
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(OrderListsTest, NothingFoundIsNoFailure)
{
    expectOrders({}).WillOnce(DoAll(SetArgReferee<1>(7), Return(QList<QVariantMap>())));
    EXPECT_EQ(entrustList(u"{}"_qs), successReply(uR"({"entrustInfoList":[],"size":0,"totalSize":7})"_qs));
    expectExecutions({}).WillOnce(Return(QList<QVariantMap>()));
    EXPECT_EQ(executionList(u"{}"_qs), successReply(uR"({"executionInfoList":[],"size":0,"totalSize":0})"_qs));
}

TEST_F(OrderListsTest, FiltersThatAreJsonWithoutConditionsAskForEverything)
{
    expectOrders({}).Times(5).WillRepeatedly(Return(QList<QVariantMap>()));
    const QString nothing = successReply(uR"({"entrustInfoList":[],"size":0,"totalSize":0})"_qs);
    for (const char *filter : {"{}", "[]", " \n{} ", "[1,2]", "\xEF\xBB\xBF{}"})
        EXPECT_EQ(entrustList(QString::fromUtf8(filter)), nothing) << filter;
}

TEST_F(OrderListsTest, FiltersThatAreNoJsonTextAreRefusedAndTheHostIsNotAsked)
{
    const QString deep = QString(2000, u'[') + QString(2000, u']');
    const QVariant filters[] = {QString(),
                                u"abc"_qs,
                                u"7"_qs,
                                u"null"_qs,
                                u"true"_qs,
                                u"\"text\""_qs,
                                u"{"_qs,
                                u"{} x"_qs,
                                u"{'symbol':[]}"_qs,
                                uR"({"symbol":[1e999]})"_qs,
                                deep,
                                QString(1 << 20, u'x'),
                                QVariant(),
                                7,
                                1.5,
                                true,
                                QVariantMap{{u"symbol"_qs, u"S"_qs}},
                                QVariantList{u"{}"_qs},
                                QStringList{u"{}"_qs}};
    for (const QVariant &filter : filters) {
        log.clear();
        EXPECT_EQ(entrustList(filter), refused);
        expectOnlyLine(QtWarningMsg, u"processEntrustList"_qs, u"过滤条件参数转换错误"_qs);
        log.clear();
        EXPECT_EQ(executionList(filter), refused);
        expectOnlyLine(QtWarningMsg, u"processExecutionList"_qs, u"过滤条件参数转换错误"_qs);
    }
}

TEST_F(OrderListsTest, ParsedFilterOfAnOrderListIsLogged)
{
    expectOrders({{Security::symbol, QStringList{u"S"_qs}}}).WillOnce([this] {
        expectOnlyLine(QtDebugMsg, u"processEntrustList"_qs, u"QMap((\""_qs + Security::symbol);
        return QList<QVariantMap>();
    });
    entrustList(uR"({"symbol":"S"})"_qs);
    EXPECT_EQ(log.lines().size(), 1);
}

TEST_F(OrderListsTest, ParsedFilterIsNotLoggedWhenNobodyWantsDebugLines)
{
    QLoggingCategory::setFilterRules(u"varnel.websdk.debug=false"_qs);
    expectOrders({}).WillOnce(Return(QList<QVariantMap>()));
    entrustList(u"{}"_qs);
    EXPECT_TRUE(log.lines().isEmpty());
    QLoggingCategory::setFilterRules(QString());
}

} // namespace
