#pragma once

#include "HostApi.h"
#include "HostTypes.h"

#include <QList>
#include <QString>

/// Orders of one trading account that are placed, or asked about, together. Lives on the caller's stack,
/// used on one thread.
class VARNEL_HOST_API OrderRequestList {
public:
    /// account: a trading account (tagUserAccountInfo::tradingAccount). tag: the page's own mark, may be empty.
    OrderRequestList(const QString &account, const QString &tag);
    ~OrderRequestList();

    /// Adds an order to place.
    void AddSymbol(const VarnelLogic::OrderRequest &order);

    /// Adds the one line of a quantity query. qty is 0; text4 is the page's price and text6 its exchange, both
    /// unchanged.
    void AddSymbol(const QString &symbol, qint64 qty, const QString &priceType, const QString &text4,
                   const QString &side, const QString &text6);

    QString Account() const;                         ///< for the host: the trading account
    QString Tag() const;                             ///< for the host: the page's mark
    QList<VarnelLogic::OrderRequest> Orders() const; ///< for the host: the lines in the order of their adding

private:
    QString m_account;
    QString m_tag;
    QList<VarnelLogic::OrderRequest> m_orders;
};
