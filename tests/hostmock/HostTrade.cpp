// The host's trade logic and report generators: every operation calls the mock. Order lists record their orders.

#include "HostMock.h"
#include "HostOrders.h"
#include "OrderRequestList.h"
#include "VarnelDealReportGen.h"
#include "VarnelEntrustReportGen.h"
#include "VarnelPositionReportGen.h"
#include "VarnelTradeLogic.h"
#include "VarnelTradeLogicFactory.h"

#include <atomic>

// OrderRequestList

namespace {
std::atomic<int> orderLists{0};
}

int orderListsMade()
{
    return orderLists;
}

OrderRequestList::OrderRequestList(const QString &account, const QString &tag) : m_account(account), m_tag(tag)
{
    ++orderLists;
}

OrderRequestList::~OrderRequestList() = default;

void OrderRequestList::AddSymbol(const VarnelLogic::OrderRequest &order)
{
    m_orders.append(order);
}

// The fourth text is the price, the last one the exchange.
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

// VarnelTradeLogic

VarnelTradeLogic *VarnelTradeLogic::instance()
{
    static VarnelTradeLogic self;
    return &self;
}

int VarnelTradeLogic::getDispQtyStepBySymbol(const QString &symbol)
{
    return HostMock::current(Q_FUNC_INFO).VarnelTradeLogic_getDispQtyStepBySymbol(symbol);
}

QString VarnelTradeLogic::queryMaxTradableQty(const OrderRequestList &orders)
{
    return HostMock::current(Q_FUNC_INFO).VarnelTradeLogic_queryMaxTradableQty(orders);
}

int VarnelTradeLogic::orders(const OrderRequestList &orders, QVariant &response, int kind,
                             QList<VarnelLogic::ResponseInfo> &errors, bool flag)
{
    return HostMock::current(Q_FUNC_INFO).VarnelTradeLogic_orders(orders, response, kind, errors, flag);
}

QList<QMap<QString, QVariant>> VarnelTradeLogic::transOrderRsp(const OrderRequestList &orders, const QVariant &response)
{
    return HostMock::current(Q_FUNC_INFO).VarnelTradeLogic_transOrderRsp(orders, response);
}

// VarnelTradeLogicFactory

VarnelTradeLogicFactory *VarnelTradeLogicFactory::GetInstance()
{
    static VarnelTradeLogicFactory self;
    return &self;
}

int VarnelTradeLogicFactory::SendRequestSync(const Basic_Trade_REQ_Type &type, const QVariant &request,
                                             const QString &caller, QVariant &response)
{
    return HostMock::current(Q_FUNC_INFO).VarnelTradeLogicFactory_SendRequestSync(type, request, caller, response);
}

// VarnelEntrustReportGen

bool VarnelEntrustReportGen::fillLineData(const QVariantMap &record, QMap<int, QVariantMap> &lineData,
                                          const QStringList &fields, ShowType showType, bool flag)
{
    return HostMock::current(Q_FUNC_INFO).VarnelEntrustReportGen_fillLineData(record, lineData, fields, showType, flag);
}

// VarnelDealReportGen

bool VarnelDealReportGen::fillLineData(const QVariantMap &record, QMap<int, QVariantMap> &lineData,
                                       const QStringList &fields, ShowType showType, bool flag)
{
    return HostMock::current(Q_FUNC_INFO).VarnelDealReportGen_fillLineData(record, lineData, fields, showType, flag);
}

// VarnelPositionReportGen

bool VarnelPositionReportGen::fillLineData(int kind, const QVariantMap &record, QMap<int, QVariantMap> &lineData,
                                           const QStringList &fields, ShowType showType, const QVariantMap &quote,
                                           const QString &text, bool flag)
{
    return HostMock::current(Q_FUNC_INFO)
        .VarnelPositionReportGen_fillLineData(kind, record, lineData, fields, showType, quote, text, flag);
}
