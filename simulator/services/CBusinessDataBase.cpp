#include "CBusinessDataBase.h"

#include "Tessar_Fields.h"
#include "Varnel_Fields.h"
#include "platform/Terminal.h"

CBusinessDataBase *CBusinessDataBase::GetInstance()
{
    static CBusinessDataBase instance;
    return &instance;
}

QString CBusinessDataBase::GetLoginAccount() const
{
    return sim::Terminal::instance().login().account;
}

QVariantMap CBusinessDataBase::GetAccountDetailsByTradinngAccount(const QString &tradingAccount)
{
    const sim::FundAccount *fund = sim::Terminal::instance().books().fundAccountOf(tradingAccount);
    if (!fund)
        return {};
    return {{Tessar_Fields::UserAccount::tradingAccount, tradingAccount},
            {Varnel_Fields::FastFocus::fundAccount, fund->account}};
}

QString CBusinessDataBase::getClientOrderID()
{
    return sim::Terminal::instance().books().nextClientOrderId();
}
