#include "OrderRequestList.h"

OrderRequestList::OrderRequestList(const QString &account, const QString &tag) : m_account(account), m_tag(tag) {}

OrderRequestList::~OrderRequestList() = default;

void OrderRequestList::AddSymbol(const VarnelLogic::OrderRequest &order)
{
    m_orders.append(order);
}

void OrderRequestList::AddSymbol(const QString &symbol, qint64 qty, const QString &priceType, const QString &price,
                                 const QString &side, const QString &exchange)
{
    VarnelLogic::OrderRequest order;
    order.symbol = symbol;
    order.orderQty = qty;
    order.priceType = priceType;
    order.price = price;
    order.side = side;
    order.exchange = exchange;
    m_orders.append(order);
}

QString OrderRequestList::Account() const
{
    return m_account;
}

QString OrderRequestList::Tag() const
{
    return m_tag;
}

QList<VarnelLogic::OrderRequest> OrderRequestList::Orders() const
{
    return m_orders;
}
