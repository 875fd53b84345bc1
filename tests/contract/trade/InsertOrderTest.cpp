#include "LogHook.h"
#include "TradeTest.h"

#include "HostOrders.h"

#include "Tessar_Fields.h"
#include "Varnel_Values.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using namespace Tessar_Fields;
using namespace Varnel_Values;

/// What a page sends.
struct PageOrder {
    QString symbol = u"600000.SH"_qs;
    QString exchange = u"exchange"_qs;
    QString side = u"side"_qs;
    QString priceType = u"limit"_qs;
    QString price = u"10.25"_qs;
    QString qty = u"100"_qs;
};

class InsertOrderTest : public TradeTest {
protected:
    QString insert(const PageOrder &page = {}, const QString &uuid = u"u1"_qs)
    {
        return process->processInsertOrder(uuid, u"f1"_qs, page.symbol, page.exchange, page.side, page.priceType,
                                           page.price, page.qty, u"tag"_qs);
    }

    /// The order that the host gets for it.
    static Orders ordersOf(const PageOrder &page, qint64 qty, const QString &side)
    {
        return {{page.symbol, qty, page.priceType, page.price, side, page.exchange, u"c1"_qs, u"tag"_qs}};
    }
    static Orders ordersOf(const PageOrder &page) { return ordersOf(page, 100, page.side); }

    /// Expects every host call up to the request itself.
    void expectRequest(const Orders &orders, int result, const Errors &errors = {})
    {
        expectKnownAccount();
        expectClientOrderIds(1);
        expectOrders(orders, result, errors);
    }

    static Records accepted(const QVariant &orderId = u"1001"_qs)
    {
        return {
            {{System::requestExeStatus, u"0"_qs}, {System::textDescription, QString()}, {Security::orderID, orderId}}};
    }

    /// The result with what the page sent; orderId is JSON and may be absent.
    static QString echo(const PageOrder &page = {}, const QString &orderId = QString())
    {
        return uR"({"exchange":"%1","fundAccount":"f1",%2"orderSide":"%3","price":"%4","priceType":"%5","qty":"%6","symbol":"%7"})"_qs
            .arg(page.exchange, orderId.isNull() ? QString() : uR"("orderID":%1,)"_qs.arg(orderId), page.side,
                 page.price, page.priceType, page.qty, page.symbol);
    }

    static QString reply(const QString &code, const QString &msg, const QString &result)
    {
        return uR"({"code":"%1","msg":"%2","resultData":%3,"uuid":"u1"})"_qs.arg(code, msg, result);
    }
};

TEST_F(InsertOrderTest, AcceptedOrderIsAnsweredWithItsIdentifier)
{
    const PageOrder page;
    expectRequest(ordersOf(page), 0);
    expectResponse(ordersOf(page), accepted());
    EXPECT_EQ(insert(), successReply(echo(page, u"\"1001\""_qs)));
    EXPECT_THAT(logged(), ElementsAre(logText("TradeProcess::processInsertOrder", page.priceType, page.price)));
}

TEST_F(InsertOrderTest, UnknownFundAccountIsRefusedBeforeAnythingIsPlaced)
{
    expectAccounts(host, u"f1"_qs, {});
    EXPECT_EQ(insert(), refusal(u"资产账号获取错误"_qs));
    EXPECT_THAT(logged(), IsEmpty());
}

TEST_F(InsertOrderTest, CodeAndMessageAreThoseOfTheFirstResponse)
{
    const PageOrder page;
    expectRequest(ordersOf(page), 0, {{9, u"not looked at"_qs}});
    expectResponse(
        ordersOf(page),
        {{{System::requestExeStatus, -7}, {System::textDescription, u"资金\"不足\""_qs}, {Security::orderID, 1002}},
         accepted(u"second"_qs).first()});
    EXPECT_EQ(insert(), reply(u"-7"_qs, uR"(资金\"不足\")"_qs, echo(page, u"\"1002\""_qs)));
}

TEST_F(InsertOrderTest, FieldsMissingInTheResponseAreEmpty)
{
    const PageOrder page;
    expectRequest(ordersOf(page), 0);
    expectResponse(ordersOf(page), {{}});
    EXPECT_EQ(insert(), reply(QString(), QString(), echo(page, u"\"\""_qs)));
}

TEST_F(InsertOrderTest, AcceptanceWithoutAResponseIsASuccessWithoutAnIdentifier)
{
    const PageOrder page;
    expectRequest(ordersOf(page), 0);
    expectResponse(ordersOf(page), {});
    EXPECT_EQ(insert(), successReply(echo(page)));
}

TEST_F(InsertOrderTest, RejectionIsAnsweredWithItsFirstReason)
{
    const PageOrder page;
    for (const int result : {-1, 1, 319}) {
        expectRequest(ordersOf(page), result, {{11, u"价格超限"_qs}, {12, u"second"_qs}});
        EXPECT_EQ(insert(), reply(u"-1"_qs, u"价格超限"_qs, echo(page)));
    }
    expectRequest(ordersOf(page), -1, {{0, QString()}});
    EXPECT_EQ(insert(), reply(u"-1"_qs, QString(), echo(page)));
}

TEST_F(InsertOrderTest, IsLoggedBeforeItIsPlaced)
{
    expectKnownAccount();
    expectClientOrderIds(1);
    QStringList linesWhenPlaced;
    EXPECT_CALL(host, VarnelTradeLogic_orders(testing::_, testing::_, 319, testing::_, true)).WillOnce([&] {
        linesWhenPlaced = logged();
        return -1;
    });
    const PageOrder page;
    insert(page);
    EXPECT_THAT(linesWhenPlaced,
                testing::ElementsAre(logText("TradeProcess::processInsertOrder", page.priceType, page.price)));
}

TEST_F(InsertOrderTest, IsLoggedWhenTheOrderListIsMade)
{
    const PageOrder page;
    expectRequest(ordersOf(page), -1);
    int listsWhenLogged = -1;
    const int before = orderListsMade();
    const LogHook hook([&](const QString &) { listsWhenLogged = orderListsMade() - before; });
    insert(page);
    EXPECT_EQ(listsWhenLogged, 1);
}

TEST_F(InsertOrderTest, RejectionWithoutAReasonStaysQuiet)
{
    const PageOrder page;
    expectRequest(ordersOf(page), -1);
    EXPECT_EQ(insert(), successReply(echo(page)));
}

TEST_F(InsertOrderTest, QuantityIsADecimalIntegerOrZeroAndEchoedAsItIs)
{
    const struct {
        const char *text;
        qint64 qty;
    } quantities[] = {{"abc", 0},        {"100.5", 0},      {"100.0", 0},  {"+100", 100},
                      {" 100 ", 100},    {"-5", -5},        {"", 0},       {"1e3", 0},
                      {"1,000", 0},      {"0x10", 0},       {"007", 7},    {"2147483647", 2147483647},
                      {"2147483648", 0}, {"9999999999", 0}, {"１００", 0}, {"100股", 0}};
    for (const auto &each : quantities) {
        PageOrder page;
        page.qty = QString::fromUtf8(each.text);
        expectRequest(ordersOf(page, each.qty, page.side), 0);
        expectResponse(ordersOf(page, each.qty, page.side), accepted());
        EXPECT_EQ(insert(page), successReply(echo(page, u"\"1001\""_qs))) << each.text;
    }
}

TEST_F(InsertOrderTest, AfterHoursTheHostGetsItsOwnSideCodeAndThePageItsSideBack)
{
    PageOrder page;
    page.priceType = PriceType::shEntrustAfterHours;
    const auto expectSide = [&](const QString &sent, const QString &placed) {
        page.side = sent;
        expectRequest(ordersOf(page, 100, placed), 0);
        expectResponse(ordersOf(page, 100, placed), accepted());
        EXPECT_EQ(insert(page), successReply(echo(page, u"\"1001\""_qs))) << qPrintable(sent);
    };
    for (const QString &buy : SideUnion::buyItemList)
        expectSide(buy, SideUnion::pfpBuy);
    for (const QString &other : {u"sell"_qs, QString(), SideUnion::pfpBuy, SideUnion::buyItemList.first().toUpper()})
        expectSide(other, SideUnion::pfpSell);
}

TEST_F(InsertOrderTest, OutsideAfterHoursTheHostGetsThePagesSide)
{
    PageOrder page;
    page.side = SideUnion::buyItemList.first();
    for (const QString &priceType : {QString(), PriceType::shEntrustAfterHours.toUpper()}) {
        page.priceType = priceType;
        expectRequest(ordersOf(page), 0);
        expectResponse(ordersOf(page), accepted());
        EXPECT_EQ(insert(page), successReply(echo(page, u"\"1001\""_qs)));
    }
}

TEST_F(InsertOrderTest, HostileTextsReachTheHostUnchanged)
{
    const QString huge(1 << 20, u'x');
    const QString hostile = u"\"\\\n\u0000𝄞,</script>%1"_qs;
    const PageOrder page{hostile, huge, QString(), u"%2"_qs, u"-1e99"_qs, hostile};
    expectRequest(ordersOf(page, 0, page.side), 0);
    expectResponse(ordersOf(page, 0, page.side), accepted(hostile));
    const QString text = insert(page, hostile);
    const QJsonObject answer = QJsonDocument::fromJson(text.toUtf8()).object();
    EXPECT_EQ(answer.value(u"uuid"_qs), hostile);
    const QJsonObject result = resultOf(text).toObject();
    EXPECT_EQ(result.size(), 8);
    EXPECT_EQ(result.value(u"symbol"_qs), hostile);
    EXPECT_EQ(result.value(u"qty"_qs), hostile);
    EXPECT_EQ(result.value(u"exchange"_qs), huge);
    EXPECT_EQ(result.value(u"priceType"_qs), u"%2"_qs);
    EXPECT_EQ(result.value(u"orderID"_qs), hostile);
}

} // namespace
