#pragma once

#include "HostApi.h"
#include "HostTypes.h"

#include <QList>
#include <QString>

/// Orders of one trading account that are placed, or asked about, together. Lives on the caller's stack,
/// used on one thread.
class VARNEL_HOST_API OrderRequestList {
public:
    OrderRequestList(const QString &account, const QString &tag);
    ~OrderRequestList();

    void AddSymbol(const VarnelLogic::OrderRequest &order);

    /// A line of a quantity query: the fourth and the last text come unchanged from the page.
    void AddSymbol(const QString &symbol, qint64 qty, const QString &priceType, const QString &text4,
                   const QString &side, const QString &text6);

    QString Account() const;
    QString Tag() const;
    QList<VarnelLogic::OrderRequest> Orders() const;

private:
    QString m_account;
    QString m_tag;
    QList<VarnelLogic::OrderRequest> m_orders;
};
