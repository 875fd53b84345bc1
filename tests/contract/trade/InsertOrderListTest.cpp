#include "TradeTest.h"

#include "Tessar_Fields.h"
#include "Varnel_Values.h"

using testing::ElementsAre;

namespace {

using namespace Tessar_Fields;
using namespace Varnel_Values;

const QString started = logText("TradeProcess::processInsertOrderList", u"f1"_qs, u"tag"_qs);

class InsertOrderListTest : public TradeTest {
protected:
    QString insert(const QString &orders, const QString &uuid = u"u1"_qs)
    {
        return process->processInsertOrderList(uuid, u"f1"_qs, u"tag"_qs, orders);
    }

    /// Expects every host call for a list that the host accepts without a response.
    void expectPlaced(const Orders &orders)
    {
        expectKnownAccount();
        if (!orders.isEmpty())
            expectClientOrderIds(orders.size());
        expectOrders(orders, 0);
        expectResponse(orders, {});
    }

    static VarnelLogic::OrderRequest order(const QString &clOrdID, const QString &side = QString(),
                                           const QString &priceType = QString(), qint64 qty = 0)
    {
        return {QString(), qty, priceType, QString(), side, QString(), clOrdID, u"tag"_qs};
    }
};

TEST_F(InsertOrderListTest, TwoOrdersAreOneRequestAndEachHasItsAnswer)
{
    const Orders orders{{u"600000.SH"_qs, 100, u"limit"_qs, u"10.25"_qs, u"buy"_qs, u"SSE"_qs, u"c1"_qs, u"tag"_qs},
                        {u"IF2503"_qs, 2, u"market"_qs, QString(), u"sell"_qs, u"CFFEX"_qs, u"c2"_qs, u"tag"_qs}};
    expectKnownAccount();
    expectClientOrderIds(2);
    expectOrders(orders, 0);
    // The host's values in the host's order, not what the page sent.
    expectResponse(orders, {{{Security::symbol, u"s2"_qs},
                             {Security::side, u"sd2"_qs},
                             {CustomField::priceType, u"pt2"_qs},
                             {Security::price, 10.5},
                             {Security::orderQty, 200},
                             {UserAccount::securityExchange, u"e2"_qs},
                             {Security::orderID, 1002},
                             {System::requestExeStatus, -1},
                             {System::textDescription, u"数量错误"_qs}},
                            {{Security::orderID, u"1001"_qs}, {System::requestExeStatus, u"0"_qs}}});
    EXPECT_EQ(insert(uR"([{"symbol":"600000.SH","exchange":"SSE","orderSide":"buy","priceType":"limit",)"
                     uR"("price":"10.25","qty":"100"},{"symbol":"IF2503","exchange":"CFFEX","orderSide":"sell",)"
                     uR"("priceType":"market","qty":"2","unknown":"ignored"}])"_qs),
              successReply(uR"([{"code":"-1","exchange":"e2","msg":"数量错误","orderID":"1002","orderSide":"sd2",)"
                           uR"("price":"10.5","priceType":"pt2","qty":"200","symbol":"s2"},)"
                           uR"({"code":"0","exchange":"","msg":"","orderID":"1001","orderSide":"","price":"",)"
                           uR"("priceType":"","qty":"","symbol":""}])"_qs));
    EXPECT_THAT(logged(), ElementsAre(started));
}

TEST_F(InsertOrderListTest, UnknownFundAccountIsRefusedBeforeTheListIsRead)
{
    for (const QString &orders : {u"[{}]"_qs, u"no JSON"_qs}) {
        log.clear();
        expectAccounts(host, u"f1"_qs, {});
        EXPECT_EQ(insert(orders), uR"({"code":"-1","msg":"资产账号获取错误","resultData":[],"uuid":"u1"})"_qs);
        EXPECT_THAT(logged(), ElementsAre(started));
    }
}

TEST_F(InsertOrderListTest, TextThatIsNoJsonIsAnsweredWithTheEmptyTextAndPlacesNothing)
{
    for (const char *wrong : {"", " ", "[", "[{}", "{\"a\":}", "[{}] x", "7", "\"text\"", "null", "true", "[1e999]",
                              "[{'symbol':'a'}]", "[{},]", "[\"\\uD8\"]"}) {
        QJsonParseError error;
        QJsonDocument::fromJson(QByteArray(wrong), &error);
        ASSERT_NE(error.error, QJsonParseError::NoError) << wrong;
        log.clear();
        expectKnownAccount();
        EXPECT_EQ(insert(QString::fromUtf8(wrong)), QString()) << wrong;
        ASSERT_EQ(logged().size(), 2) << wrong;
        EXPECT_EQ(logged().at(0), started);
        const QString line = logged().at(1);
        EXPECT_TRUE(line.startsWith(u"TradeProcess::processInsertOrderList  jsonErr.errorString(): "_qs))
            << qPrintable(line);
        EXPECT_TRUE(line.contains(error.errorString())) << qPrintable(line);
    }
}

TEST_F(InsertOrderListTest, JsonWithoutElementsCallsTheHostWithAnEmptyList)
{
    for (const char *empty : {"[]", "{}", " [ ] ", R"({"symbol":"S","qty":"1"})"}) {
        expectPlaced({});
        EXPECT_EQ(insert(QString::fromUtf8(empty)), successReply(u"[]"_qs)) << empty;
    }
}

TEST_F(InsertOrderListTest, ElementsThatAreNoObjectsAreOrdersOfEmptyTexts)
{
    expectPlaced({order(u"c1"_qs), order(u"c2"_qs), order(u"c3"_qs), order(u"c4"_qs), order(u"c5"_qs)});
    EXPECT_EQ(insert(uR"([1,"S",null,[{"symbol":"S"}],{}])"_qs), successReply(u"[]"_qs));
}

TEST_F(InsertOrderListTest, ValuesOfOtherTypesAreReadAsTexts)
{
    expectPlaced({{u"600000"_qs, 1000000, u"true"_qs, u"10.5"_qs, QString(), QString(), u"c1"_qs, u"tag"_qs}});
    EXPECT_EQ(insert(uR"([{"symbol":600000,"qty":1000000,"priceType":true,"price":10.5,"orderSide":null,)"
                     uR"("exchange":{"a":1}}])"_qs),
              successReply(u"[]"_qs));
}

TEST_F(InsertOrderListTest, QuantityIsADecimalIntegerOrZero)
{
    const struct {
        const char *sent;
        qint64 qty;
    } quantities[] = {{R"("abc")", 0},
                      {R"("100.5")", 0},
                      {"100.5", 0},
                      {R"("+100")", 100},
                      {R"(" 100 ")", 100},
                      {"-5", -5},
                      {"2147483648", 0},
                      {R"("9999999999")", 0},
                      {"null", 0},
                      {"[100]", 0},
                      {R"("2147483647")", 2147483647}};
    for (const auto &each : quantities) {
        expectPlaced({order(u"c1"_qs, QString(), QString(), each.qty)});
        EXPECT_EQ(insert(uR"([{"qty":%1}])"_qs.arg(QString::fromUtf8(each.sent))), successReply(u"[]"_qs)) << each.sent;
    }
}

TEST_F(InsertOrderListTest, AfterHoursRuleHoldsForEachOrder)
{
    const QString afterHours = PriceType::shEntrustAfterHours;
    const QString &buy = SideUnion::buyItemList.last();
    expectPlaced({order(u"c1"_qs, SideUnion::pfpBuy, afterHours), order(u"c2"_qs, SideUnion::pfpSell, afterHours),
                  order(u"c3"_qs, SideUnion::pfpSell, afterHours), order(u"c4"_qs, buy, u"limit"_qs)});
    EXPECT_EQ(insert(uR"([{"priceType":"%1","orderSide":"%2"},{"priceType":"%1","orderSide":"sell"},)"
                     uR"({"priceType":"%1"},{"priceType":"limit","orderSide":"%2"}])"_qs.arg(afterHours, buy)),
              successReply(u"[]"_qs));
}

TEST_F(InsertOrderListTest, RejectionIsAnsweredWithItsFirstReasonAndNoOrders)
{
    const struct {
        Errors errors;
        QString msg;
    } rejections[] = {{{{11, u"账户冻结"_qs}, {12, u"second"_qs}}, u"账户冻结"_qs}, {{}, QString()}};
    for (const auto &each : rejections) {
        expectKnownAccount();
        expectClientOrderIds(1);
        expectOrders({order(u"c1"_qs)}, -3, each.errors);
        EXPECT_EQ(insert(u"[{}]"_qs), uR"({"code":"-1","msg":"%1","resultData":[],"uuid":"u1"})"_qs.arg(each.msg));
    }
}

TEST_F(InsertOrderListTest, ErrorsBesideAnAcceptanceAreNotLookedAt)
{
    expectKnownAccount();
    expectClientOrderIds(1);
    expectOrders({order(u"c1"_qs)}, 0, {{9, u"not looked at"_qs}});
    expectResponse({order(u"c1"_qs)}, {});
    EXPECT_EQ(insert(u"[{}]"_qs), successReply(u"[]"_qs));
}

TEST_F(InsertOrderListTest, TenThousandOrdersAreOneRequest)
{
    constexpr int count = 10000;
    QString sent = u"["_qs;
    Orders orders;
    Records responses;
    orders.reserve(count);
    responses.reserve(count);
    for (int i = 0; i < count; ++i) {
        sent += uR"(%1{"symbol":"S%2","qty":"%2"})"_qs.arg(i == 0 ? QString() : u","_qs).arg(i);
        orders.append(
            {u"S%1"_qs.arg(i), i, QString(), QString(), QString(), QString(), u"c%1"_qs.arg(i + 1), u"tag"_qs});
        responses.append({{Security::orderID, i}});
    }
    expectKnownAccount();
    expectClientOrderIds(count);
    expectOrders(orders, 0);
    expectResponse(orders, responses);
    const QJsonArray answers = resultOf(insert(sent + u']')).toArray();
    ASSERT_EQ(answers.size(), count);
    EXPECT_EQ(answers.at(count - 1).toObject().value(u"orderID"_qs), QString::number(count - 1));
}

TEST_F(InsertOrderListTest, HostileTextsReachTheHostUnchanged)
{
    const QString huge(1 << 20, u'x');
    expectPlaced({{u"\"\\\n\u0000𝄞,</script>%1"_qs, 0, huge, QString(), QString(), QString(), u"c1"_qs, u"tag"_qs}});
    EXPECT_EQ(insert(uR"([{"symbol":"\"\\\n\u0000\ud834\udd1e,</script>%2","priceType":"%1"}])"_qs.arg(huge, u"%1"_qs),
                     u"%1\u0000"_qs),
              successReply(u"[]"_qs, uR"(%1\u0000)"_qs));
}

} // namespace
