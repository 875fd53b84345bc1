#include "dataservice/DataProcess.h"

#include "common/AccountRules.h"
#include "common/Reply.h"

#include "OrderRequestList.h"
#include "VarnelTradeLogic.h"

using namespace WebConstants;

QString DataProcess::processTradableQty(const QString &uuid, const QString &fundAccount, const QString &symbol,
                                        const QString &argument4, const QString &side, const QString &priceType,
                                        const QString &argument7, const QString &argument8)
{
    const Operation operation = VARNEL_OPERATION(DataProcess, processTradableQty);
    const auto account = firstTradingAccount(fundAccount);
    if (!account)
        return Reply::textWithoutResult(uuid); // meant: success without an answer

    OrderRequestList orders(account->tradingAccount, argument8);
    if (lcWebSdk().isDebugEnabled())
        logLine(QtDebugMsg, operation) << priceType << argument7;
    // Quantity 0: the host is asked for the most, not about a quantity.
    orders.AddSymbol(symbol, 0, priceType, argument7, effectiveSide(side, priceType), argument4);
    const QString qty = VarnelTradeLogic::instance()->queryMaxTradableQty(orders);
    return Reply::text(uuid, QVariantMap{{Key::qty, qty}});
}
