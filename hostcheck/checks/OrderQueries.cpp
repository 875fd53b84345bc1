#include "hostcheck/checks/Records.h"
#include "hostcheck/checks/Tables.h"

#include "BusinessDataInterface.h"
#include "Tessar_Fields.h"
#include "VarnelBusinessDataInterface.h"

namespace HostCheck {

namespace {

using namespace Tessar_Fields;

const char *const kTotal = "total is the number of matches before paging";

void expectTotal(const RecordPage &page)
{
    expect(page.total >= page.records.size(), kTotal,
           page.total < 0 ? QStringLiteral("it was not set")
                          : QStringLiteral("%1 for %2 records").arg(page.total).arg(page.records.size()));
    remark(QStringLiteral("%1 in all").arg(page.total));
}

void ordersTotal(const KnownValues &)
{
    expectTotal(ordersWhere({}));
}

void executionsTotal(const KnownValues &)
{
    expectTotal(executionsWhere({}));
}

/// No record can meet this condition.
QVariantMap impossible()
{
    return {{Security::symbol, QStringList{kUnknown}}};
}

void expectNone(const RecordPage &page)
{
    expect(page.records.isEmpty() && page.total <= 0, "only records that meet every condition are given",
           QStringLiteral("%1 of %2 for a symbol that does not exist").arg(page.records.size()).arg(page.total));
}

void ordersMeetConditions(const KnownValues &)
{
    expectNone(ordersWhere(impossible()));
}

void executionsMeetConditions(const KnownValues &)
{
    expectNone(executionsWhere(impossible()));
}

void expectField(const QList<QVariantMap> &records, const QString &field, const char *expected)
{
    if (records.isEmpty())
        skip(QStringLiteral("the host has no such record"));
    for (const QVariantMap &record : records)
        expect(!record.value(field).toString().isEmpty(), expected, shown(record));
}

void ordersHaveIds(const KnownValues &)
{
    expectField(someOrders().records, Security::orderID, "every order has its identifier under Security::orderID");
}

void executionsHaveIds(const KnownValues &)
{
    expectField(someExecutions().records, Security::execID,
                "every execution has its identifier under Security::execID");
}

void listedOrdersHaveDetails(const KnownValues &)
{
    const QList<QVariantMap> orders = someOrders().records;
    const QString id = orders.value(0).value(Security::orderID).toString();
    if (id.isEmpty())
        skip(QStringLiteral("the host has no order with an identifier"));
    const QVariantMap details = BusinessDataInterface::GetOrderDetailByOrderID(id);
    for (const QString &field : {UserAccount::tradingAccount, Security::clOrdID})
        expect(!details.value(field).toString().isEmpty(),
               "an order of the list has details with its trading account and its client order id",
               QStringLiteral("nothing under \"%1\" for %2").arg(field, id));
}

QString symbolOf(const QVariantMap &position)
{
    const QString symbol = position.value(Security::symbol).toString();
    return symbol.isEmpty() ? VarnelBusinessDataInterface::GetSymbolBySecurityIDAndExchange(
                                  position.value(Security::securityID).toString(),
                                  position.value(UserAccount::securityExchange).toString())
                            : symbol;
}

QList<QVariantMap> positions(const KnownValues &known)
{
    const QList<QVariantMap> records = somePositions(known);
    if (records.isEmpty())
        skip(QStringLiteral("the trading account has no positions"));
    return records;
}

void positionsNameTheirSecurity(const KnownValues &known)
{
    const QList<QVariantMap> records = positions(known);
    for (const QVariantMap &record : records)
        expect(!symbolOf(record).isEmpty(), "every position has a symbol, or a code and an exchange that lead to one",
               shown(record));
}

void positionsOfOneSymbol(const KnownValues &known)
{
    const QString symbol = positions(known).first().value(Security::symbol).toString();
    if (symbol.isEmpty())
        skip(QStringLiteral("the first position has no symbol"));
    expect(!positionsOf(known, symbol).isEmpty(), "the positions of one symbol can be asked for",
           QStringLiteral("none for \"%1\"").arg(symbol));
}

} // namespace

CheckTable orderQueryChecks()
{
    CheckTable checks{
        {"orders.total", "Pages cannot tell how many pages of orders there are.", ordersTotal},
        {"orders.meet-conditions", "Pages that filter their orders get all of them.", ordersMeetConditions},
        {"orders.have-ids", "Of all changes within 200 ms pages get the last one only.", ordersHaveIds},
        {"orders.have-details", "Orders cannot be cancelled.", listedOrdersHaveDetails},
        {"executions.total", "Pages cannot tell how many pages of executions there are.", executionsTotal},
        {"executions.meet-conditions", "Pages that filter their executions get all of them.", executionsMeetConditions},
        {"executions.have-ids", "Of all executions within 200 ms pages get the last one only.", executionsHaveIds},
        {"positions.name-their-security", "Positions show no quote and no profit.", positionsNameTheirSecurity,
         Part::Login, TradingAccount},
        {"positions.of-one-symbol", "Pages that ask for one position get none.", positionsOfOneSymbol, Part::Login,
         TradingAccount},
    };
    for (Check &check : checks)
        check.part = Part::Login;
    return checks;
}

} // namespace HostCheck
