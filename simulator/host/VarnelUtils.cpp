#include "VarnelUtils.h"

#include "CMessageCommon.h"
#include "CPackMessageCommon.h"
#include "QvPresenterClass.h"
#include "Varnel_MsgType.h"
#include "terminal/Terminal.h"
#include "traffic/Log.h"

ShowType VarnelUtils::GetCurrentShowType()
{
    sim::traffic::log().hostCall("VarnelUtils::GetCurrentShowType");
    return PlainShowType; // the simulated terminal has no other display mode
}

QList<QVariantMap> VarnelUtils::QueryDatasFromServer(QvPresenterClass *presenter, const QString &msgType,
                                                     const QVariantMap &conditions, QueryDataMode, QString &error)
{
    sim::traffic::log().hostCall("VarnelUtils::QueryDatasFromServer");
    error.clear();
    if (msgType != Varnel_MsgType::QueryAlgoPermissionsByConditionRequest) {
        error = QStringLiteral("服务器不支持该查询：%1").arg(msgType);
        return {};
    }
    sim::Terminal::instance().awaitSlowServer();
    CPackMessageCommon pack;
    for (auto condition = conditions.constBegin(); condition != conditions.constEnd(); ++condition)
        pack.AddVaule(condition.key(), condition.value());
    auto *request = new CMessageCommon;
    request->SetType(msgType);
    request->SetMsg(pack.GetPackedMsg(0));
    request->SetSrcid(presenter->pluginPid());

    QVariant reply;
    if (presenter->sendRequest_Sync(request, reply) != 0) {
        error = QStringLiteral("服务器没有应答");
        return {};
    }
    QList<QVariantMap> records;
    const QVariantList list = reply.toList();
    records.reserve(list.size());
    for (const QVariant &record : list)
        records.append(record.toMap());
    return records;
}
