// The terminal must put here: nothing, if its trade logic takes the orders as this list keeps them.
#include "OrderRequestList.h"

OrderRequestList::OrderRequestList(const QString &account, const QString &tag) : m_account(account), m_tag(tag) {}

OrderRequestList::~OrderRequestList() = default;

void OrderRequestList::AddSymbol(const VarnelLogic::OrderRequest &order)
{
    m_orders.append(order);
}

void OrderRequestList::AddSymbol(const QString &symbol, qint64 qty, const QString &priceType, const QString &text4,
                                 const QString &side, const QString &text6)
{
    VarnelLogic::OrderRequest order;
    order.symbol = symbol;
    order.orderQty = qty;
    order.priceType = priceType;
    order.price = text4;
    order.side = side;
    order.exchange = text6;
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
