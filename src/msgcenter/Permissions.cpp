#include "msgcenter/WebMsgCenter.h"

#include "common/WebConstants.h"

#include "Algo_Fields.h"
#include "Algo_Values.h"
#include "CBusinessDataBase.h"
#include "Tessar_Fields.h"
#include "VarnelInitStateMgr.h"
#include "VarnelUtils.h"
#include "Varnel_Fields.h"
#include "Varnel_MsgType.h"

#include <QReadLocker>
#include <QWriteLocker>

using namespace WebConstants;

void WebMsgCenter::initSnbPermission()
{
    VarnelInitStateMgr *const states = VarnelInitStateMgr::instance();
    if (!states->StartInit(Permission::initState))
        return;
    const QString account = CBusinessDataBase::GetInstance()->GetLoginAccount();
    if (account.isEmpty()) {
        states->FinishInit(Permission::initState, false, true);
        return;
    }
    // The lock is not held here, so that other threads can look up permissions while the server answers.
    using Algo_Fields::VarnelStrategy::supportType;
    using Algo_Values::SupprotType::KFZ_SNB;
    QString error;
    const QList<QVariantMap> records = VarnelUtils::QueryDatasFromServer(
        this, Varnel_MsgType::QueryAlgoPermissionsByConditionRequest,
        {{Tessar_Fields::UserAccount::userID, account}, {supportType, KFZ_SNB}}, BlockingQueryDataMode, error);
    if (!error.isEmpty()) {
        states->FinishInit(Permission::initState, false, true);
        return;
    }
    states->FinishInit(Permission::initState, true, true);

    const QWriteLocker lock(&m_permissionLock);
    for (const QVariantMap &record : records) {
        const QString type = record.value(supportType).toString();
        m_permissionMap[type == KFZ_SNB ? Permission::bothSupportTypes : type].append(
            record.value(Varnel_Fields::FastFocus::fundAccount).toString());
    }
}

bool WebMsgCenter::getPermission(const QString &fundAccount, const QString &supportType)
{
    // A load that failed is tried again with each look-up, until one succeeds.
    if (!VarnelInitStateMgr::instance()->IsInited(Permission::initState))
        initSnbPermission();
    const QReadLocker lock(&m_permissionLock);
    return m_permissionMap.value(supportType).contains(fundAccount, Qt::CaseSensitive);
}
