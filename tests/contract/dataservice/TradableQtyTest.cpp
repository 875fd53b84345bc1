#include "DataServiceTest.h"

#include "Varnel_Values.h"

using testing::_;

namespace {

using namespace Varnel_Values;

const QString known = u"f1"_qs;

class TradableQtyTest : public DataServiceTest {
protected:
    QString ask(const QString &side = u"buy"_qs, const QString &priceType = u"limit"_qs)
    {
        return process->processTradableQty(u"u1"_qs, known, u"S"_qs, u"four"_qs, side, priceType, u"seven"_qs,
                                           u"eight"_qs);
    }

    /// Expects one question with this side and price type, and otherwise with what ask() passes.
    void expectQuestion(const QString &side, const QString &priceType, const QString &answer)
    {
        const testing::InSequence order;
        expectAccounts(host, known, {{known, u"name"_qs, u"t1"_qs}, {known, u"name"_qs, u"t2"_qs}});
        EXPECT_CALL(host, VarnelTradeLogic_queryMaxTradableQty(_)).WillOnce([=](const OrderRequestList &list) {
            EXPECT_EQ(list.Account(), u"t1"_qs);
            EXPECT_EQ(list.Tag(), u"eight"_qs);
            if (list.Orders().size() != 1) {
                ADD_FAILURE() << list.Orders().size() << " lines";
                return QString();
            }
            const VarnelLogic::OrderRequest line = list.Orders().first();
            EXPECT_EQ(line.symbol, u"S"_qs);
            EXPECT_EQ(line.orderQty, 0);
            EXPECT_EQ(line.priceType, priceType);
            EXPECT_EQ(line.price, u"seven"_qs); // the line's fourth argument
            EXPECT_EQ(line.side, side);
            EXPECT_EQ(line.exchange, u"four"_qs); // its last
            return answer;
        });
    }
};

TEST_F(TradableQtyTest, HostIsAskedForTheMostOfOneLine)
{
    expectQuestion(u"buy"_qs, u"limit"_qs, u"1200"_qs);
    EXPECT_EQ(ask(), successReply(uR"({"qty":"1200"})"_qs));
    expectOnlyLine(QtDebugMsg, u"processTradableQty"_qs, uR"("limit" "seven")"_qs);
}

TEST_F(TradableQtyTest, AnswerReachesThePageAsItIs)
{
    for (const char *answer : {"", "12.50", "-3", "资金不足", "1e9"}) {
        expectQuestion(u"buy"_qs, u"limit"_qs, QString::fromUtf8(answer));
        EXPECT_EQ(ask(), successReply(uR"({"qty":"%1"})"_qs.arg(QString::fromUtf8(answer))));
    }
}

TEST_F(TradableQtyTest, UnknownFundAccountIsASuccessWithoutResult)
{
    expectAccounts(host, known, {});
    EXPECT_EQ(ask(), uR"({"code":"0","msg":"","uuid":"u1"})"_qs);
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(TradableQtyTest, AfterHoursEverySideIsOneOfItsOwnTwo)
{
    for (const QString &buy : SideUnion::buyItemList) {
        expectQuestion(SideUnion::pfpBuy, PriceType::shEntrustAfterHours, u"1"_qs);
        EXPECT_EQ(ask(buy, PriceType::shEntrustAfterHours), successReply(uR"({"qty":"1"})"_qs));
    }
    for (const QString &other : {QString(), u"sell"_qs, SideUnion::pfpBuy, SideUnion::buyItemList.first().toUpper()}) {
        expectQuestion(SideUnion::pfpSell, PriceType::shEntrustAfterHours, u"2"_qs);
        EXPECT_EQ(ask(other, PriceType::shEntrustAfterHours), successReply(uR"({"qty":"2"})"_qs));
    }
}

TEST_F(TradableQtyTest, OtherwiseTheSideIsThePages)
{
    for (const QString &priceType : {QString(), PriceType::shEntrustAfterHours.toUpper()}) {
        for (const QString &side : {SideUnion::buyItemList.first(), QString(), u"anything"_qs}) {
            expectQuestion(side, priceType, u"3"_qs);
            EXPECT_EQ(ask(side, priceType), successReply(uR"({"qty":"3"})"_qs));
        }
    }
}

} // namespace
