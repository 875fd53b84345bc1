#include "dataservice/DataProcess.h"

#include "common/Reply.h"
#include "msgcenter/WebMsgCenter.h"

#include "BaseBusinessDataInterface.h"

using namespace WebConstants;

QString DataProcess::processKLineData(const QString &uuid, const QString &symbol, const QString &startTime,
                                      const QString &stopTime, EMD_KLINE_PERIOD period)
{
    QList<QVariantMap> bars;
    const int status = WebMsgCenter::instance()->syncRequestKLineData(symbol, startTime, stopTime, period, bars);
    const bool succeeded = status == 0;
    // Meant: a request that failed carries its list too, which is empty.
    return Reply::text(uuid, Reply::toList(bars), succeeded ? Code::success : Code::failure,
                       succeeded ? QString() : Message::queryFailed);
}

QString DataProcess::processGetSetting(const QString &uuid, const QString &key)
{
    return Reply::text(uuid, WebMsgCenter::instance()->getSetting(key));
}

QString DataProcess::processSaveSetting(const QString &uuid, const QString &key, const QString &value)
{
    WebMsgCenter::instance()->saveSetting(key, value);
    return Reply::text(uuid, QString());
}

QString DataProcess::processGetPermission(const QString &uuid, const QString &group, const QString &item)
{
    // Meant: a number, not a boolean.
    const int isHeld = WebMsgCenter::instance()->getPermission(group, item) ? 1 : 0;
    return Reply::text(uuid, isHeld);
}

QString DataProcess::processOpenPermissionMenu(const QString &uuid)
{
    BaseBusinessDataInterface::OpenMenuTabByMenuID(Permission::menu);
    return Reply::text(uuid, QString());
}
