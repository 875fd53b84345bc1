#include "dataservice/DataProcess.h"

#include "common/Reply.h"
#include "dataservice/CellTable.h" // complete, for the destructor

#include "CBusinessDataBase.h"
#include "QvCore.h"
#include "VarnelBusinessDataInterface.h"
#include "VarnelUtils.h"

using namespace WebConstants;

DataProcess *DataProcess::instance()
{
    static DataProcess process;
    return &process;
}

DataProcess::DataProcess()
{
    initOrderField();
    initPositionField();
}

DataProcess::~DataProcess() = default;

void DataProcess::init()
{
    showType = VarnelUtils::GetCurrentShowType();
}

QString DataProcess::processToken(const QString &uuid)
{
    return Reply::text(uuid, QvCore::instance()->getCurrentToken());
}

QString DataProcess::processLoginTrader(const QString &uuid)
{
    return Reply::text(uuid, CBusinessDataBase::GetInstance()->GetLoginAccount());
}

QString DataProcess::processTraderList(const QString &uuid)
{
    const QStringList traders = VarnelBusinessDataInterface::GetOrganTraderList().keys();
    return Reply::text(uuid, traders);
}

QString DataProcess::processFundAccountList(const QString &uuid, const int &fundProp)
{
    const QList<tagUserAccountInfo> accounts =
        VarnelBusinessDataInterface::GetFundAccountListByFundProp(fundProp, 16, false, QStringList(), true);
    QVariantList records;
    records.reserve(accounts.size());
    for (const tagUserAccountInfo &account : accounts) {
        records.append(
            QVariantMap{{Key::fundAccount, account.fundAccount}, {Key::fundAccountName, account.fundAccountName}});
    }
    return Reply::text(uuid, records);
}

QString DataProcess::processGetOPStation(const QString &uuid, const QString &first, const QString &second)
{
    const QString separator = first.isEmpty() || second.isEmpty() ? QString() : QStringLiteral(";");
    const QString station = VarnelBusinessDataInterface::GetVarnelOrderStation(first + separator + second);
    return Reply::text(uuid, station);
}
