// The terminal must put here: its login, the details of its trading accounts and its client order identifiers.
#include "CBusinessDataBase.h"

#include <QUuid>

CBusinessDataBase *CBusinessDataBase::GetInstance()
{
    static CBusinessDataBase instance;
    return &instance;
}

QString CBusinessDataBase::GetLoginAccount() const
{
    return {};
}

QVariantMap CBusinessDataBase::GetAccountDetailsByTradinngAccount(const QString &)
{
    return {};
}

QVariantMap CBusinessDataBase::getTradeAccountParam(const QString &, const QString &)
{
    return {};
}

QString CBusinessDataBase::getClientOrderID()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces); // must be new after a restart, too
}
