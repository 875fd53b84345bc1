// A page that stays connected over a settlement, a holiday and the morning after it, in the scenario `week`.
#include "Controller.h"
#include "Page.h"
#include "gateway/Gateway.h"
#include "terminal/Terminal.h"

#include <QSet>

#include <cmath>
#include <map>
#include <memory>

using namespace sim;

namespace {

using Cents = qint64;

const QString kStock = QStringLiteral("880010002");
const QString kFutures = QStringLiteral("990020002");
const QString kShare = QStringLiteral("609801");
const QString kFuture = QStringLiteral("YL2506");

Cents cents(double yuan)
{
    return std::llround(yuan * 100);
}

QString shown(const QJsonObject &record, const char *column)
{
    return record[QLatin1String(column)][QLatin1String("userRole")].toVariant().toString();
}

/// The built-in week, in which time moves by commands only.
class WeekPageTest : public testing::Test {
protected:
    WeekPageTest()
    {
        EXPECT_TRUE(gateway.listen(0));
        control = std::make_unique<Controller>(gateway.port());
        page = std::make_unique<Page>(gateway);
        EXPECT_TRUE(page->awaitOpen());
        call("Sub_subscribe_REQ", {kShare + QStringLiteral(".SH")});
    }

    static Scenario week()
    {
        Scenario scenario;
        QString error;
        EXPECT_TRUE(Scenario::read(Scenario::builtIn(QStringLiteral("week")), scenario, error)) << qPrintable(error);
        return scenario;
    }

    void jump(const char *time) { EXPECT_EQ(QString(), control->run(QStringLiteral("jump ") + QLatin1String(time))); }

    /// What the reply to the call has.
    QJsonValue call(const char *method, QJsonArray args)
    {
        const QByteArray reply = QByteArray(method).replace("_REQ", "_RES");
        const int before = page->heard(reply).size();
        args.prepend(QStringLiteral("u"));
        page->invoke(method, args);
        return page->awaitObject(reply, before).value(QStringLiteral("resultData"));
    }

    /// The identifier of the order that was placed.
    QString place(const char *price, int qty)
    {
        const bool isMarket = *price == 0;
        const QJsonValue placed =
            call("Trade_insertOrder_REQ",
                 {kStock, kShare + QStringLiteral(".SH"), QString(), QStringLiteral("Buy"),
                  QLatin1String(isMarket ? "Market" : "Limit"), QLatin1String(price), QString::number(qty), QString()});
        return placed[QLatin1String("orderID")].toString();
    }

    /// The records of all pushes of that name, in their order.
    QVector<QJsonObject> pushed(const char *name) const
    {
        QVector<QJsonObject> records;
        for (const QJsonArray &args : page->heard(name)) {
            const QJsonDocument text = QJsonDocument::fromJson(args.at(0).toString().toUtf8());
            if (text.isObject())
                records.append(text.object());
            for (const QJsonValue record : text.array())
                records.append(record.toObject());
        }
        return records;
    }

    bool awaitOrder(const QString &id, const char *status, const char *remark)
    {
        return await([&] {
            for (const QJsonObject &order : pushed("on_entrustUpdate")) {
                if (shown(order, "orderId") == id && shown(order, "status") == QLatin1String(status) &&
                    shown(order, "remark") == QString::fromUtf8(remark))
                    return true;
            }
            return false;
        });
    }

    /// The position as the page was told last; empty before.
    QJsonObject position(const QString &fund, const QString &security) const
    {
        QJsonObject last;
        for (const QJsonObject &position : pushed("on_positionUpdate")) {
            if (position[QLatin1String("fundAccount")] == fund && position[QLatin1String("securityId")] == security)
                last = position;
        }
        return last;
    }

    Cents cashOfStock()
    {
        const QJsonValue asset = call("Data_getAsset_REQ", {kStock})[0];
        return cents(asset[QLatin1String("totalAsset")].toString().toDouble()) -
               cents(asset[QLatin1String("marketValue")].toString().toDouble());
    }

    /// By what all executions that were pushed have changed the cash of the stock fund: fees are those of the scenario.
    Cents paidByExecutions() const
    {
        struct Paid {
            Cents amount = 0; ///< less what was sold
            Cents feeByRate = 0;
        };
        std::map<QString, Paid> orders;
        for (const QJsonObject &execution : pushed("on_executionUpdate")) {
            if (shown(execution, "fundAccount") != kStock)
                continue;
            const Cents amount = cents(shown(execution, "dealAmount").toDouble());
            const bool buys = shown(execution, "side") == QLatin1String("Buy");
            Paid &paid = orders[shown(execution, "orderId")];
            paid.amount += buys ? amount : -amount;
            paid.feeByRate += cents(double(amount) / 100 * (buys ? 0.00025 : 0.00075));
        }
        Cents sum = 0;
        for (const auto &[id, paid] : orders)
            sum += paid.amount + qMax<Cents>(paid.feeByRate, 500);
        return sum;
    }

    const Scenario scenario = week();
    Terminal terminal{scenario, scenario.logins.first(), 1e-6};
    Gateway gateway{QString(), {}};
    std::unique_ptr<Controller> control;
    std::unique_ptr<Page> page;
};

} // namespace

TEST_F(WeekPageTest, SeesTheSettlementTheMorningAndItsOwnMoneyAddUp)
{
    jump("2025-05-30 14:40:00");
    const Cents cash = cashOfStock();
    EXPECT_EQ(30000000, cash);
    const QString bought = place("", 3000);
    const QString waits = place("17.00", 300);
    ASSERT_FALSE(waits.isEmpty());
    jump("2025-05-30 14:50:00");
    ASSERT_TRUE(awaitOrder(bought, "Filled", ""));
    ASSERT_TRUE(await([&] { return position(kStock, kShare)[QLatin1String("currentQty")] == 23000; }));
    EXPECT_EQ(20000 - 4000,
              position(kStock, kShare)[QLatin1String("tradableQty")].toInt()); // the others wait to be sold
    jump("2025-05-30 15:59:59");
    const Cents paid = cash - cashOfStock();
    EXPECT_GT(paid, 0);
    EXPECT_TRUE(await([&] { return paidByExecutions() == paid; })) << paid << " and " << paidByExecutions();

    page->frames.clear();
    jump("2025-05-30 16:00:01"); // and the way on the bus
    EXPECT_TRUE(awaitOrder(waits, "Cancelled", "当日有效，收市后失效"));
    ASSERT_TRUE(await([&] { return !position(kFutures, kFuture).isEmpty() && !position(kStock, kShare).isEmpty(); }));
    EXPECT_EQ(23000, position(kStock, kShare)[QLatin1String("tradableQty")].toInt());
    const QJsonObject future = position(kFutures, kFuture);
    EXPECT_EQ(future[QLatin1String("marketValue")].toDouble(), future[QLatin1String("cost")].toDouble());
    EXPECT_NE(future[QLatin1String("totalCost")].toDouble(), future[QLatin1String("cost")].toDouble());
    const double close = future[QLatin1String("lastPrice")].toDouble();
    EXPECT_EQ(cents(-20 * 300 * close), cents(future[QLatin1String("cost")].toDouble()));
    ASSERT_TRUE(await([&] {
        QSet<QString> funds;
        for (const QJsonObject &asset : pushed("on_AssetUpdate"))
            funds.insert(asset[QLatin1String("fundAccount")].toString());
        return funds.size() == scenario.fundAccounts.size();
    }));

    page->frames.clear();
    jump("2025-06-03 09:00:01"); // Monday is a holiday
    EXPECT_TRUE(await([&] { return page->heard("on_orderLoaded").size() == 1; }));
    ASSERT_TRUE(await([&] { return !pushed("on_entrustUpdate").isEmpty() && !pushed("on_tickUpdate").isEmpty(); }));
    EXPECT_EQ(QStringLiteral("20250603090000"), pushed("on_tickUpdate").last()[QLatin1String("time")].toString());
    const QJsonObject called = pushed("on_entrustUpdate").first();
    EXPECT_EQ(kFutures, shown(called, "fundAccount"));
    EXPECT_EQ(QStringLiteral("BuyClose"), shown(called, "sideUnion"));
    EXPECT_EQ(QStringLiteral("保证金不足，强制平仓"), shown(called, "remark"));
    EXPECT_EQ(1, call("Data_getEntrustList_REQ", {QStringLiteral("{}"), 0, 0})[QLatin1String("totalSize")].toInt());
    EXPECT_EQ(0, call("Data_getExecutionList_REQ", {QStringLiteral("{}"), 0, 0})[QLatin1String("totalSize")].toInt());
    const Cents overnight = cashOfStock();
    place("", 500);
    jump("2025-06-03 09:35:00");
    EXPECT_TRUE(awaitOrder(shown(called, "orderId"), "Filled", "保证金不足，强制平仓"));
    EXPECT_TRUE(await([&] { return position(kFutures, kFuture)[QLatin1String("currentQty")] == -19; }));
    const Cents paidToday = overnight - cashOfStock();
    EXPECT_GT(paidToday, 0);
    EXPECT_TRUE(await([&] { return paidByExecutions() == paidToday; })) << paidToday << " and " << paidByExecutions();
}
