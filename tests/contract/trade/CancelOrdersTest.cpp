#include "TradeTest.h"

#include "Tessar_Fields.h"

using testing::_;
using testing::DoAll;
using testing::IsEmpty;
using testing::Return;
using testing::SetArgReferee;

namespace {

using namespace Tessar_Fields;

class CancelOrdersTest : public TradeTest {
protected:
    void expectDetails(const QString &orderId, const QVariantMap &details)
    {
        EXPECT_CALL(host, BusinessDataInterface_GetOrderDetailByOrderID(orderId)).WillOnce(Return(details));
    }

    /// Expects one request with these entries, and answers it with the response.
    void expectRequest(const Records &entries, const QVariant &response, int result = 0)
    {
        EXPECT_CALL(host, VarnelTradeLogicFactory_SendRequestSync(CancelOrdersTradeRequest,
                                                                  Identical(QVariant::fromValue(entries)), u"WEB"_qs,
                                                                  testing::Property(&QVariant::isValid, false)))
            .WillOnce(DoAll(SetArgReferee<3>(response), Return(result)));
    }

    static QVariantMap entry(const QVariant &account, const QString &orderId, const QVariant &clOrdID)
    {
        return {{UserAccount::tradingAccount, account}, {Security::orderID, orderId}, {Security::clOrdID, clOrdID}};
    }

    static QVariantMap answer(const QVariant &orderId, const QVariant &code, const QVariant &msg)
    {
        return {{Security::orderID, orderId}, {System::requestExeStatus, code}, {System::textDescription, msg}};
    }

    QString cancel(const QStringList &orderIds) { return process->processCancelOrders(u"u1"_qs, orderIds); }
};

TEST_F(CancelOrdersTest, EachOrderIsAnEntryOfOneRequestInThePagesOrder)
{
    EXPECT_EQ(int(CancelOrdersTradeRequest), 13);
    expectDetails(u"1001"_qs, {{UserAccount::tradingAccount, u"t1"_qs},
                               {Security::clOrdID, u"c1"_qs},
                               {Security::orderID, u"not this"_qs},
                               {Security::price, 10}});
    expectDetails(u"1002"_qs, {{UserAccount::tradingAccount, 22}, {Security::clOrdID, 33}}); // as the host has them
    expectRequest({entry(u"t1"_qs, u"1001"_qs, u"c1"_qs), entry(22, u"1002"_qs, 33)},
                  QVariant::fromValue(
                      Records{answer(u"1002"_qs, u"-1"_qs, u"已成交"_qs), answer(u"1001"_qs, u"0"_qs, QString())}));
    EXPECT_EQ(
        cancel({u"1001"_qs, u"1002"_qs}),
        successReply(uR"([{"code":"-1","msg":"已成交","orderId":"1002"},{"code":"0","msg":"","orderId":"1001"}])"_qs));
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(CancelOrdersTest, ResponseMayBeAListOfVariants)
{
    expectDetails(u"1"_qs, {});
    expectRequest({entry(QVariant(), u"1"_qs, QVariant())},
                  QVariantList{answer(u"1"_qs, u"0"_qs, u"a"_qs), answer(u"2"_qs, u"1"_qs, u"b"_qs)});
    EXPECT_EQ(cancel({u"1"_qs}),
              successReply(uR"([{"code":"0","msg":"a","orderId":"1"},{"code":"1","msg":"b","orderId":"2"}])"_qs));
}

TEST_F(CancelOrdersTest, ValuesOfTheResponseAreTheHosts)
{
    expectRequest({}, QVariantList{answer(7, -1, QVariant()), QVariantMap(), u"no map"_qs,
                                   answer(u"𝄞\""_qs, true, QVariantList{1})});
    EXPECT_EQ(cancel({}),
              successReply(uR"([{"code":-1,"msg":null,"orderId":7},{"code":null,"msg":null,"orderId":null},)"
                           uR"({"code":null,"msg":null,"orderId":null},{"code":true,"msg":[1],"orderId":"𝄞\""}])"_qs));
}

TEST_F(CancelOrdersTest, UnknownIdIsSentWithValuesThatAreInvalid)
{
    expectDetails(u"unknown"_qs, {});
    expectDetails(QString(), {{Security::clOrdID, QString()}});
    expectRequest({entry(QVariant(), u"unknown"_qs, QVariant()), entry(QVariant(), QString(), QString())},
                  QVariantList{answer(u"unknown"_qs, u"-1"_qs, u"委托不存在"_qs)});
    EXPECT_EQ(cancel({u"unknown"_qs, QString()}),
              successReply(uR"([{"code":"-1","msg":"委托不存在","orderId":"unknown"}])"_qs));
}

TEST_F(CancelOrdersTest, NoIdIsARequestWithAnEmptyList)
{
    expectRequest({}, QVariant());
    EXPECT_EQ(cancel({}), successReply(u"[]"_qs));
}

TEST_F(CancelOrdersTest, ResponseThatIsNoListIsAnEmptyResult)
{
    for (const QVariant &response : {QVariant(), QVariant(QVariantList()), QVariant::fromValue(Records()),
                                     QVariant(u"text"_qs), QVariant(7), QVariant(QVariantMap())}) {
        expectRequest({}, response);
        EXPECT_EQ(cancel({}), successReply(u"[]"_qs));
    }
}

TEST_F(CancelOrdersTest, ResultOfTheRequestIsNotLookedAt)
{
    for (const int result : {-1, 1, 13}) {
        expectRequest({}, QVariantList{answer(u"1"_qs, u"0"_qs, QString())}, result);
        EXPECT_EQ(cancel({}), successReply(uR"([{"code":"0","msg":"","orderId":"1"}])"_qs));
    }
}

TEST_F(CancelOrdersTest, SameIdTwiceIsAskedForAndSentTwice)
{
    for (int i = 0; i < 2; ++i)
        expectDetails(u"1"_qs, {{Security::clOrdID, i}});
    expectRequest({entry(QVariant(), u"1"_qs, 0), entry(QVariant(), u"1"_qs, 1)}, QVariant());
    EXPECT_EQ(cancel({u"1"_qs, u"1"_qs}), successReply(u"[]"_qs));
}

TEST_F(CancelOrdersTest, TenThousandOrdersAreOneRequest)
{
    constexpr int count = 10000;
    QStringList ids;
    Records entries;
    QVariantList response;
    ids.reserve(count);
    entries.reserve(count);
    response.reserve(count);
    for (int i = 0; i < count; ++i) {
        ids.append(QString::number(i));
        entries.append(entry(u"t1"_qs, ids.last(), u"c"_qs));
        response.append(answer(i, 0, 0));
    }
    EXPECT_CALL(host, BusinessDataInterface_GetOrderDetailByOrderID(_))
        .Times(count)
        .WillRepeatedly(Return(QVariantMap{{UserAccount::tradingAccount, u"t1"_qs}, {Security::clOrdID, u"c"_qs}}));
    expectRequest(entries, response);
    EXPECT_EQ(resultOf(cancel(ids)).toArray().size(), count);
}

} // namespace
