#include "TerminalTest.h"

#include "BusinessDataInterface.h"
#include "CBusinessDataBase.h"
#include "CommonQuotaHandler.h"
#include "Tessar_Fields.h"
#include "VarnelDealReportGen.h"
#include "VarnelEntrustReportGen.h"
#include "VarnelPositionReportGen.h"
#include "Varnel_Fields.h"
#include "services/QuoteFields.h"

using namespace sim;

namespace {

using LineData = QMap<int, QVariantMap>;

const QStringList kOrderColumns =
    QStringLiteral("entrust_time security_id security_name side side_union status price_type price entrust_qty "
                   "leave_qty deal_qty deal_price entrust_amount deal_amount fundaccount_name fundaccount "
                   "exchange_order_id order_id trader_name remark user_ref_3 algo_id")
        .split(QLatin1Char(' '));
const QStringList kExecutionColumns =
    QStringLiteral("deal_time security_id security_name side side_union deal_price deal_qty deal_amount "
                   "fundaccount_name fundaccount exec_id exchange_order_id order_id trader_name user_ref_3 algo_id")
        .split(QLatin1Char(' '));
const QStringList kPositionColumns =
    QStringLiteral("fundaccount_name fundaccount security_account security_name security_id exchange last_price "
                   "rise_down_rate current_qty tradable_qty cost_price cost cost_cny market_value market_value_cny "
                   "total_cost profit profit_rate")
        .split(QLatin1Char(' '));

class ReportsTest : public StandingTerminalTest {
protected:
    QVariantMap order(const QString &id = QStringLiteral("O1")) const
    {
        using namespace Tessar_Fields;
        return {{Security::orderID, id},
                {Security::symbol, scenario.securities.first().symbol},
                {Security::side, QStringLiteral("SellOpen")},
                {Security::orderStatus, QStringLiteral("PartlyFilled")},
                {CustomField::priceType, QStringLiteral("Limit")},
                {Security::price, 18.3},
                {Security::orderQty, Q_INT64_C(1234500)},
                {UserAccount::loginUserId, scenario.traders.firstKey()},
                {QStringLiteral("orderTime"), QStringLiteral("20250303094107")},
                {QStringLiteral("orderAmount"), 22591350.0}};
    }

    /// Display text and value of one cell of an order.
    static QPair<QString, QVariant> cell(const QVariantMap &record, const char *column,
                                         ShowType showType = PlainShowType)
    {
        LineData line;
        VarnelEntrustReportGen::fillLineData(record, line, {QLatin1String(column)}, showType, false);
        return {line[0].value(QStringLiteral("0")).toString(), line[0].value(QStringLiteral("256"))};
    }

    static void expectFull(const LineData &line, const QStringList &columns)
    {
        ASSERT_EQ(columns.size(), line.size());
        for (int i = 0; i < columns.size(); ++i) {
            EXPECT_TRUE(line[i].value(QStringLiteral("0")).isValid()) << qPrintable(columns[i]);
            EXPECT_TRUE(line[i].value(QStringLiteral("256")).isValid()) << qPrintable(columns[i]);
        }
    }
};

using Cell = QPair<QString, QVariant>;

} // namespace

TEST_F(ReportsTest, EveryColumnOfEveryOrderAndExecutionHasACell)
{
    int total = 0;
    for (const QVariantMap &record :
         BusinessDataInterface::GetOrderListByCustomKey({}, total, 0, 0, QList<QString>(), QStringList())) {
        LineData line;
        VarnelEntrustReportGen::fillLineData(record, line, kOrderColumns, PlainShowType, false);
        expectFull(line, kOrderColumns);
    }
    EXPECT_GT(total, 0);
    for (const QVariantMap &record :
         BusinessDataInterface::GetExecutionListByCustomKey({}, total, 0, 0, QStringList())) {
        LineData line;
        VarnelDealReportGen::fillLineData(record, line, kExecutionColumns, PlainShowType, false);
        expectFull(line, kExecutionColumns);
    }
    EXPECT_GT(total, 0);
}

TEST_F(ReportsTest, CodesAreShownAsWords)
{
    EXPECT_EQ(Cell(QStringLiteral("卖出"), QStringLiteral("Sell")), cell(order(), "side"));
    EXPECT_EQ(Cell(QStringLiteral("卖出开仓"), QStringLiteral("SellOpen")), cell(order(), "side_union"));
    EXPECT_EQ(Cell(QStringLiteral("部分成交"), QStringLiteral("PartlyFilled")), cell(order(), "status"));
    EXPECT_EQ(Cell(QStringLiteral("限价"), QStringLiteral("Limit")), cell(order(), "price_type"));
    EXPECT_EQ(Cell(scenario.traders.first(), scenario.traders.firstKey()), cell(order(), "trader_name"));
    EXPECT_EQ(Cell(QStringLiteral("09:41:07"), QStringLiteral("20250303094107")), cell(order(), "entrust_time"));
}

TEST_F(ReportsTest, UnknownCodesAreShownUnchanged)
{
    QVariantMap record = order();
    record.insert(Tessar_Fields::Security::side, QStringLiteral("Lend"));
    record.insert(Tessar_Fields::Security::orderStatus, QStringLiteral("Lost"));
    EXPECT_EQ(Cell(QStringLiteral("Lend"), QStringLiteral("Lend")), cell(record, "side"));
    EXPECT_EQ(Cell(QStringLiteral("Lend"), QStringLiteral("Lend")), cell(record, "side_union"));
    EXPECT_EQ(Cell(QStringLiteral("Lost"), QStringLiteral("Lost")), cell(record, "status"));
}

TEST_F(ReportsTest, ATextThatIsNoTimeIsShownAsNothing)
{
    QVariantMap record = order();
    for (const char *text :
         {"", "20250303", "2025030309410", "202503030941077", "2025030309410x", " 0250303094107", "20250230094107",
          "20251303094107", "20250303240000", "20250303096000", "20250303094160", "00000303094107"}) {
        record.insert(QStringLiteral("orderTime"), QLatin1String(text));
        EXPECT_EQ(Cell(QString(), QLatin1String(text)), cell(record, "entrust_time")) << text;
    }
    for (const auto &[text, shown] : {QPair<const char *, const char *>{"20240229000000", "00:00:00"},
                                      {"20250330023000", "02:30:00"},
                                      {"99991231235959", "23:59:59"}}) {
        record.insert(QStringLiteral("orderTime"), QLatin1String(text));
        EXPECT_EQ(Cell(QLatin1String(shown), QLatin1String(text)), cell(record, "entrust_time")) << text;
    }
}

TEST_F(ReportsTest, NumbersAreShownPlainlyOrGrouped)
{
    EXPECT_EQ(Cell(QStringLiteral("1234500"), Q_INT64_C(1234500)), cell(order(), "entrust_qty"));
    EXPECT_EQ(Cell(QStringLiteral("1,234,500"), Q_INT64_C(1234500)), cell(order(), "entrust_qty", GroupedShowType));
    EXPECT_EQ(Cell(QStringLiteral("22591350.00"), 22591350.0), cell(order(), "entrust_amount"));
    EXPECT_EQ(Cell(QStringLiteral("22,591,350.00"), 22591350.0), cell(order(), "entrust_amount", GroupedShowType));
}

TEST_F(ReportsTest, NumbersAreRoundedAsTheirExactValuesAre)
{
    const auto shown = [&](const char *column, const QString &field, const QVariant &value) {
        QVariantMap record = order();
        record.insert(field, value);
        return cell(record, column);
    };
    const QString amount = QStringLiteral("orderAmount");
    const auto expectMoney = [&](const char *text, double value, double kept) {
        EXPECT_EQ(Cell(QLatin1String(text), kept), shown("entrust_amount", amount, value));
    };
    expectMoney("0.00", 0, 0);
    expectMoney("0.00", -0.0, 0);
    expectMoney("-0.00", -0.001, 0);
    expectMoney("0.01", 0.01, 0.01);
    expectMoney("-0.07", -0.07, -0.07);
    expectMoney("1.00", 1.005, 1); // is below 1.005, and 1.005 * 100 below 100.5
    expectMoney("0.13", 0.125, 0.13);
    expectMoney("0.38", 0.375, 0.38);
    expectMoney("-1234567.89", -1234567.89, -1234567.89);
    expectMoney("90071992547409.91", 90071992547409.91, 90071992547409.91);
    expectMoney("10000000000000000.00", 1e16, 1e16);
    expectMoney("100000000000000000000.00", 1e20, 1e20);
    EXPECT_EQ(QStringLiteral("0.67"), shown("deal_price", QStringLiteral("dealPrice"), 2.0 / 3).first);
    EXPECT_EQ(QVariant(0.6667), shown("deal_price", QStringLiteral("dealPrice"), 2.0 / 3).second);
    EXPECT_EQ(Cell(QStringLiteral("-1200"), Q_INT64_C(-1200)),
              shown("entrust_qty", Tessar_Fields::Security::orderQty, Q_INT64_C(-1200)));
    EXPECT_EQ(Cell(QStringLiteral("12"), QStringLiteral("12")),
              shown("entrust_qty", Tessar_Fields::Security::orderQty, QStringLiteral("12")));
}

TEST_F(ReportsTest, PricesHaveTheDecimalsOfTheirSecurity)
{
    QVariantMap record = order();
    EXPECT_EQ(Cell(QStringLiteral("18.30"), 18.3), cell(record, "price"));
    for (const Instrument &instrument : terminal.exchange().instruments()) {
        if (instrument.decimals == 3)
            record.insert(Tessar_Fields::Security::symbol, instrument.symbol);
    }
    EXPECT_EQ(Cell(QStringLiteral("18.300"), 18.3), cell(record, "price"));
    record.insert(Tessar_Fields::Security::price, 0.0);
    EXPECT_EQ(QStringLiteral("市价"), cell(record, "price").first);
}

TEST_F(ReportsTest, ColumnsWithoutAFieldAreLeftOut)
{
    LineData line;
    VarnelEntrustReportGen::fillLineData({}, line, kOrderColumns, PlainShowType, false);
    EXPECT_TRUE(line.isEmpty());
    VarnelDealReportGen::fillLineData({}, line, kExecutionColumns, PlainShowType, false);
    EXPECT_TRUE(line.isEmpty());
    VarnelPositionReportGen::fillLineData(0, {}, line, kPositionColumns, PlainShowType, {}, QString(), false);
    EXPECT_TRUE(line.isEmpty());
    VarnelEntrustReportGen::fillLineData(order(), line, {QStringLiteral("weather"), QStringLiteral("order_id")},
                                         PlainShowType, false);
    EXPECT_EQ(QList<int>{1}, line.keys());
}

TEST_F(ReportsTest, APositionIsValuedAtTheQuote)
{
    for (const FundAccount &fund : terminal.accounts().fundAccounts(AllFunds)) {
        const QVariantMap details =
            CBusinessDataBase::GetInstance()->GetAccountDetailsByTradinngAccount(fund.tradingAccounts.first());
        for (const QVariantMap &record : BusinessDataInterface::GetPositionListByAccount(
                 details, QString(), QString(), QString(), QString(), QString(), QString())) {
            const QString symbol = record.value(Tessar_Fields::Security::symbol).toString();
            const QVariantMap quote = CommonQuotaHandler::instance()->GetQuotaSnapshot(symbol, 0);
            LineData line;
            VarnelPositionReportGen::fillLineData(0, record, line, kPositionColumns, PlainShowType, quote, QString(),
                                                  false);
            expectFull(line, kPositionColumns);
            const auto number = [&](const char *column) {
                return line[kPositionColumns.indexOf(QLatin1String(column))].value(QStringLiteral("256")).toDouble();
            };
            const double multiplier = terminal.exchange().instrument(symbol)->multiplier;
            EXPECT_NE(0, number("current_qty"));
            EXPECT_LE(qAbs(number("tradable_qty")), qAbs(number("current_qty")));
            EXPECT_EQ(quote.value(QuoteFields::last).toDouble(), number("last_price"));
            EXPECT_NEAR(number("last_price") * number("current_qty") * multiplier, number("market_value"), 0.01);
            EXPECT_NEAR(number("market_value") - number("cost"), number("profit"), 0.011);
            EXPECT_NEAR(number("profit") / qAbs(number("cost")), number("profit_rate"), 1e-5);
            EXPECT_NEAR(number("last_price") / quote.value(QuoteFields::previousClose).toDouble() - 1,
                        number("rise_down_rate"), 1e-5);
            // The cost price has four decimals, the cost two.
            EXPECT_NEAR(number("cost"), number("cost_price") * number("current_qty") * multiplier,
                        qAbs(number("current_qty")) * multiplier * 0.0001 + 0.01);
            EXPECT_EQ(number("cost"), number("cost_cny"));
            EXPECT_EQ(number("market_value"), number("market_value_cny"));
        }
    }
}

TEST_F(ReportsTest, WithoutAQuoteAPositionHasNoValue)
{
    const QString account = scenario.fundAccounts.first().tradingAccounts.first();
    const QVariantMap record = BusinessDataInterface::GetPositionListByAccount(
                                   CBusinessDataBase::GetInstance()->GetAccountDetailsByTradinngAccount(account),
                                   QString(), QString(), QString(), QString(), QString(), QString())
                                   .first();
    LineData line;
    VarnelPositionReportGen::fillLineData(0, record, line, kPositionColumns, PlainShowType, {}, QString(), false);
    const QStringList missing{QStringLiteral("last_price"),   QStringLiteral("rise_down_rate"),
                              QStringLiteral("market_value"), QStringLiteral("market_value_cny"),
                              QStringLiteral("profit"),       QStringLiteral("profit_rate")};
    for (int i = 0; i < kPositionColumns.size(); ++i)
        EXPECT_EQ(!missing.contains(kPositionColumns[i]), line.contains(i)) << qPrintable(kPositionColumns[i]);
}
