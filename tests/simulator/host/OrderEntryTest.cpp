#include "host/OrderEntry.h"
#include "TerminalTest.h"

#include "Varnel_Fields.h"

#include <QFile>
#include <QSet>

#include <algorithm>

using namespace sim;
using namespace Tessar_Fields;

namespace {

const QString kShare = QStringLiteral("609801.SH");
const QString kFuture = QStringLiteral("YL2503.CF");
const QString kLow = QStringLiteral("17.00"); // far below the price of the share

class OrderEntryTest : public StandingTerminalTest {
protected:
    static int numberOfOrders()
    {
        int total = -1;
        BusinessDataInterface::GetOrderListByCustomKey({}, total, 0, 1, QList<QString>(), QStringList());
        return total;
    }

    static QVariantMap newest()
    {
        int total = -1;
        return BusinessDataInterface::GetOrderListByCustomKey({}, total, 0, 1, QList<QString>(), QStringList()).first();
    }

    static void expectDocumented(const QString &reason)
    {
        QFile page(QStringLiteral(DOCS_FOLDER "/vocabulary.md"));
        ASSERT_TRUE(page.open(QIODevice::ReadOnly));
        EXPECT_TRUE(QString::fromUtf8(page.readAll()).contains(QStringLiteral("\n| %1 |").arg(reason)))
            << qPrintable(reason);
    }

    entry::Outcome place(const VarnelLogic::OrderRequest &line) const { return entry::place(account, {line}); }

    const QString account = scenario.fundAccounts.first().tradingAccounts.first();
    const QString futuresAccount = scenario.fundAccounts.last().tradingAccounts.first();
    const int before = numberOfOrders();
};

} // namespace

TEST_F(OrderEntryTest, AnAcceptedOrderIsInTheBooksAsEntered)
{
    const VarnelLogic::OrderRequest line = entry::line(kShare, "Buy", 300, QStringLiteral("17.50"));
    const entry::Outcome outcome = place(line);
    EXPECT_EQ(0, outcome.result);
    EXPECT_TRUE(outcome.errors.isEmpty());
    ASSERT_EQ(1, outcome.responses.size());
    EXPECT_EQ(QStringLiteral("0"), outcome.status());
    EXPECT_EQ(QString(), outcome.text());

    const QVariantMap response = outcome.responses.first();
    const QVariantMap expected{{Security::orderID, outcome.id()},
                               {System::requestExeStatus, QStringLiteral("0")},
                               {System::textDescription, QString()},
                               {Security::symbol, kShare},
                               {Security::side, QStringLiteral("Buy")},
                               {CustomField::priceType, QStringLiteral("Limit")},
                               {Security::price, QStringLiteral("17.5")},
                               {Security::orderQty, QStringLiteral("300")},
                               {UserAccount::securityExchange, QStringLiteral("SH")}};
    EXPECT_EQ(expected, response);

    const QVariantMap record = newest();
    EXPECT_EQ(outcome.id(), record.value(Security::orderID).toString());
    EXPECT_EQ(line.clOrdID, record.value(Security::clOrdID).toString());
    EXPECT_EQ(account, record.value(UserAccount::tradingAccount).toString());
    EXPECT_EQ(terminal.login().account, record.value(UserAccount::loginUserId).toString());
    EXPECT_EQ(QStringLiteral("page tag"), record.value(Varnel_Fields::ETF::UserReference3).toString());
    EXPECT_EQ(QString(), record.value(Security::algoOrderID).toString());
    EXPECT_EQ(QStringLiteral("Reported"), record.value(Security::orderStatus).toString());
    EXPECT_EQ(17.5, record.value(Security::price).toDouble());
    EXPECT_EQ(record, BusinessDataInterface::GetOrderDetailByOrderID(outcome.id()));
    EXPECT_EQ(before + 1, numberOfOrders());
}

TEST_F(OrderEntryTest, AnInvalidOrderIsRejectedAndIsInTheBooks)
{
    const QList<QPair<VarnelLogic::OrderRequest, QString>> orders{
        {entry::line(kShare, "Buy", 150, kLow), QStringLiteral("委托数量不符合交易单位")},
        {entry::line(kShare, "Buy", 0, kLow), QStringLiteral("委托数量超出范围")},
        {entry::line(kShare, "Buy", -100, kLow), QStringLiteral("委托数量超出范围")},
        {entry::line(kShare, "Buy", 100, QStringLiteral("17.005")), QStringLiteral("委托价格不符合最小变动价位")},
        {entry::line(kShare, "Buy", 100, QStringLiteral("99")), QStringLiteral("委托价格超出涨跌停范围")},
        {entry::line(kShare, "Buy", 1000000, kLow), QStringLiteral("可用资金不足")},
        {entry::line(kShare, "Sell", 1000000, kLow), QStringLiteral("可用持仓不足")},
    };
    for (const auto &[line, reason] : orders) {
        const entry::Outcome outcome = place(line);
        EXPECT_EQ(0, outcome.result);
        EXPECT_EQ(QStringLiteral("-1"), outcome.status());
        EXPECT_EQ(reason, outcome.text());
        expectDocumented(reason);
        EXPECT_EQ(outcome.id(), newest().value(Security::orderID).toString());
        EXPECT_EQ(QStringLiteral("Rejected"), newest().value(Security::orderStatus).toString());
        EXPECT_EQ(reason, newest().value(QStringLiteral("remark")).toString());
    }
    EXPECT_EQ(before + orders.size(), numberOfOrders());
}

TEST_F(OrderEntryTest, AnInvalidLineRefusesTheWholeRequest)
{
    const QList<QPair<VarnelLogic::OrderRequest, QString>> lines{
        {entry::line(QStringLiteral("609801"), "Buy", 100, kLow), QStringLiteral("证券代码不存在")},
        {entry::line(QString(), "Buy", 100, kLow), QStringLiteral("证券代码不存在")},
        {entry::line(kShare, "buy", 100, kLow), QStringLiteral("买卖方向错误")},
        {entry::line(kShare, "BuyOpen", 100, kLow), QStringLiteral("买卖方向错误")},
        {entry::line(kShare, "Buy", 100, kLow, "Cheap"), QStringLiteral("价格类型错误")},
        {entry::line(kShare, "Buy", 100, QString()), QStringLiteral("委托价格错误")},
        {entry::line(kShare, "Buy", 100, QStringLiteral("-1")), QStringLiteral("委托价格错误")},
        {entry::line(kShare, "Buy", 100, QStringLiteral("abc")), QStringLiteral("委托价格错误")},
        {entry::line(kShare, "Buy", 100, kLow, "Limit", QStringLiteral("SZ")), QStringLiteral("交易市场与证券不符")},
        {entry::line(kFuture, "BuyOpen", 1, QString(), "Market"), QStringLiteral("该账户不能交易此类证券")},
    };
    for (const auto &[line, reason] : lines) {
        const entry::Outcome outcome = place(line);
        EXPECT_NE(0, outcome.result);
        EXPECT_EQ(QStringList{reason}, outcome.errors);
        expectDocumented(reason);
    }
    EXPECT_EQ(before, numberOfOrders());
}

TEST_F(OrderEntryTest, AHugePriceDoesNotOverflowTheMoneyCheck)
{
    const QVector<Instrument> &listed = terminal.exchange().instruments();
    const auto unlimited = std::find_if(listed.begin(), listed.end(), [](const Instrument &instrument) {
        return instrument.kind == SecurityKind::Bond && instrument.limitRate == 0;
    });
    ASSERT_NE(listed.end(), unlimited);
    for (const char *price : {"20000000000", "90000000000", "92233000000", "1000000000000"}) {
        const entry::Outcome outcome =
            place(entry::line(unlimited->symbol, "Buy", unlimited->maxQty, QLatin1String(price)));
        EXPECT_EQ(0, outcome.result) << price;
        EXPECT_EQ(QStringLiteral("可用资金不足"), outcome.text()) << price;
        EXPECT_LT(0, newest().value(QStringLiteral("orderAmount")).toDouble()) << price;
    }
    for (const char *price : {"1000000000001", "1e20", "1e300"}) {
        const entry::Outcome outcome = place(entry::line(unlimited->symbol, "Buy", 10, QLatin1String(price)));
        EXPECT_EQ(QStringList{QStringLiteral("委托价格错误")}, outcome.errors) << price;
    }
}

TEST_F(OrderEntryTest, UnknownAccountsAndEmptyListsAreRefused)
{
    EXPECT_EQ(QStringList{QStringLiteral("委托列表为空")}, entry::place(account, {}).errors);
    const VarnelLogic::OrderRequest good = entry::line(kShare, "Buy", 100, kLow);
    for (const QString &unknown : {QString(), QStringLiteral("nobody"), scenario.fundAccounts.first().account}) {
        EXPECT_EQ(QStringList{QStringLiteral("交易账号不存在")}, entry::place(unknown, {good}).errors);
        EXPECT_NE(0, entry::place(unknown, {good}).result);
    }
    EXPECT_EQ(before, numberOfOrders());
}

TEST_F(OrderEntryTest, OrdersThatTheUserDoesNotConfirmAreRefused)
{
    QVector<qint64> askedFor;
    bool answer = false;
    terminal.askBeforeOrders([&](const std::vector<Order> &orders) {
        for (const Order &order : orders)
            askedFor.append(order.qty);
        return answer;
    });
    const VarnelLogic::OrderRequest good = entry::line(kShare, "Buy", 100, kLow);
    const entry::Outcome refused = entry::place(account, {good, good});
    EXPECT_NE(0, refused.result);
    EXPECT_EQ(QStringList{QStringLiteral("用户取消了委托")}, refused.errors);
    expectDocumented(refused.errors.first());
    EXPECT_EQ(QVector<qint64>({100, 100}), askedFor);
    EXPECT_EQ(before, numberOfOrders());

    answer = true;
    EXPECT_EQ(0, place(good).result);
    EXPECT_EQ(3, askedFor.size());
    EXPECT_EQ(before + 1, numberOfOrders());

    place(entry::line(kShare, "Buy", 100, QStringLiteral("x"))); // refused without a question
    EXPECT_EQ(3, askedFor.size());
}

TEST_F(OrderEntryTest, EveryInvalidLineOfAListIsReportedAndNoOrderIsEntered)
{
    const entry::Outcome outcome = entry::place(account, {entry::line(kShare, "Buy", 100, kLow),
                                                          entry::line(QStringLiteral("?"), "Buy", 100, kLow),
                                                          entry::line(kShare, "Buy", 100, QStringLiteral("x"))});
    EXPECT_NE(0, outcome.result);
    EXPECT_EQ(QStringList({QStringLiteral("第2笔委托：证券代码不存在"), QStringLiteral("第3笔委托：委托价格错误")}),
              outcome.errors);
    EXPECT_EQ(before, numberOfOrders());
}

TEST_F(OrderEntryTest, EachOrderOfAListIsAnsweredInItsPlace)
{
    const entry::Outcome outcome =
        entry::place(account, {entry::line(kShare, "Buy", 100, kLow), entry::line(kShare, "Buy", 150, kLow),
                               entry::line(kShare, "Buy", 200, QString(), "Market")});
    EXPECT_EQ(0, outcome.result);
    ASSERT_EQ(3, outcome.responses.size());
    EXPECT_EQ(QStringLiteral("0"), outcome.status(0));
    EXPECT_EQ(QStringLiteral("-1"), outcome.status(1));
    EXPECT_EQ(QStringLiteral("0"), outcome.status(2));
    EXPECT_EQ(QStringLiteral("0"), outcome.responses[2].value(Security::price).toString());
    EXPECT_LT(outcome.id(0), outcome.id(1));
    EXPECT_LT(outcome.id(1), outcome.id(2));
}

TEST_F(OrderEntryTest, AListOfThousandsIsEntered)
{
    const auto cheap = entry::line(QStringLiteral("519821.SH"), "Buy", 100, QStringLiteral("3.53"));
    for (const int size : {500, 10000}) {
        const entry::Outcome outcome = entry::place(account, QVector<VarnelLogic::OrderRequest>(size, cheap).toList());
        ASSERT_EQ(size, outcome.responses.size());
        QSet<QString> ids;
        for (int i = 0; i < size; ++i) {
            ASSERT_EQ(QStringLiteral("0"), outcome.status(i)) << i;
            ids.insert(outcome.id(i));
        }
        EXPECT_EQ(size, ids.size());
    }
    EXPECT_EQ(before + 10500, numberOfOrders());
}

TEST_F(OrderEntryTest, FuturesAreOpenedAndAfterHoursOrdersStayOpen)
{
    EXPECT_EQ(QStringLiteral("0"),
              entry::place(futuresAccount, {entry::line(kFuture, "SellOpen", 1, QString(), "Market")}).status());
    EXPECT_EQ(QStringLiteral("0"), place(entry::line(QStringLiteral("689803.SH"), "AfterHoursBuy", 200,
                                                     QStringLiteral("96.50"), "AfterHours"))
                                       .status());
    EXPECT_EQ(QStringLiteral("Reported"), newest().value(Security::orderStatus).toString());
}

TEST_F(OrderEntryTest, ACancelIsCompleteWhenItIsAnswered)
{
    const QString id = place(entry::line(kShare, "Buy", 300, kLow)).id();
    const entry::Outcome outcome = entry::cancel(QStringList{id});
    EXPECT_EQ(0, outcome.result);
    ASSERT_EQ(1, outcome.responses.size());
    const QVariantMap expected{
        {Security::orderID, id}, {System::requestExeStatus, QStringLiteral("0")}, {System::textDescription, QString()}};
    EXPECT_EQ(expected, outcome.responses.first());
    EXPECT_EQ(QStringLiteral("Cancelled"), newest().value(Security::orderStatus).toString());
}

TEST_F(OrderEntryTest, EachCancelIsAnsweredInItsPlace)
{
    const QString open = place(entry::line(kShare, "Buy", 300, kLow)).id();
    const QString refused = place(entry::line(kShare, "Buy", 50, kLow)).id();
    QVariantMap foreign = entry::cancelLine(open);
    foreign[UserAccount::tradingAccount] = futuresAccount;
    QVariantMap nobodys = entry::cancelLine(open);
    nobodys.remove(UserAccount::tradingAccount);
    // The same as a QVariantList
    const entry::Outcome outcome = entry::cancel(
        QVariantList{foreign, nobodys, entry::cancelLine(QStringLiteral("nothing")), entry::cancelLine(open),
                     entry::cancelLine(open), entry::cancelLine(refused), QVariant()});
    ASSERT_EQ(7, outcome.responses.size());
    const QString ids[] = {open, open, QStringLiteral("nothing"), open, open, refused, QString()};
    const char *texts[] = {"交易账号与委托不符", "交易账号与委托不符", "委托不存在", "",
                           "委托已撤单",         "废单不能撤单",       "委托不存在"};
    for (int i = 0; i < 7; ++i) {
        EXPECT_EQ(ids[i], outcome.id(i));
        EXPECT_EQ(QString::fromUtf8(texts[i]), outcome.text(i));
        if (!outcome.text(i).isEmpty())
            expectDocumented(outcome.text(i));
        EXPECT_EQ(outcome.text(i).isEmpty() ? QStringLiteral("0") : QStringLiteral("-1"), outcome.status(i));
    }
}

TEST_F(OrderEntryTest, AnEmptyCancelHasAnEmptyAnswerAndOtherRequestsAreUnknown)
{
    EXPECT_TRUE(entry::cancel(QStringList()).responses.isEmpty());
    QVariant response;
    EXPECT_NE(0, VarnelTradeLogicFactory::GetInstance()->SendRequestSync(Basic_Trade_REQ_Type(12), QVariant(),
                                                                         QString(), response));
    EXPECT_FALSE(response.isValid());
}
