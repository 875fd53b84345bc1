#include "msgcenter/WebMsgCenter.h"

#include "common/WebConstants.h"

#include "CMessageCommon.h"
#include "CPackMessageCommon.h"
#include "Tessar_Fields.h"

#include <memory>

using namespace WebConstants;

namespace {

/// Fixed for every request: pages cannot choose how prices are adjusted for ex-rights.
constexpr int exRightsAdjustment = 10;

/// Fills the pack and wraps it in a message; the bus owns the message once it is sent.
std::unique_ptr<CMessageCommon> kLineRequest(CPackMessageCommon &pack, int pid, const QString &symbol,
                                             const QString &startTime, const QString &stopTime, EMD_KLINE_PERIOD period)
{
    pack.AddVaule(KLine::symbol, symbol);
    pack.AddVaule(KLine::startTime, startTime);
    pack.AddVaule(KLine::stopTime, stopTime);
    pack.AddVaule(KLine::exRightsType, exRightsAdjustment);
    pack.AddVaule(KLine::periodType, int(period));
    pack.AddVaule(Tessar_Fields::System::msgType, KLine::requestType);

    auto request = std::make_unique<CMessageCommon>();
    request->SetType(KLine::requestType);
    request->SetMsg(pack.GetPackedMsg(0));
    request->SetSrcid(pid);
    return request;
}

QList<QVariantMap> toMaps(const QVariantList &list)
{
    QList<QVariantMap> maps;
    maps.reserve(list.size());
    for (const QVariant &element : list)
        maps.append(element.toMap());
    return maps;
}

} // namespace

int WebMsgCenter::asyncRequestKLineData(const QString &symbol, const QString &startTime, const QString &stopTime,
                                        EMD_KLINE_PERIOD period, QString &clientMsgID)
{
    CPackMessageCommon pack;
    auto request = kLineRequest(pack, pluginPid(), symbol, startTime, stopTime, period);
    clientMsgID = pack.GetValue(Tessar_Fields::System::clientMsgID).toString();
    return sendRequest_Async(request.release());
}

int WebMsgCenter::syncRequestKLineData(const QString &symbol, const QString &startTime, const QString &stopTime,
                                       EMD_KLINE_PERIOD period, QList<QVariantMap> &data)
{
    CPackMessageCommon pack;
    auto request = kLineRequest(pack, pluginPid(), symbol, startTime, stopTime, period);
    QVariant reply;
    const int result = sendRequest_Sync(request.release(), reply);
    if (result == 0)
        data = toMaps(reply.toList());
    return result;
}

void WebMsgCenter::ProcQuotationMsg(QString name, QVariant type, QVariant data)
{
    Q_UNUSED(name)
    if (type != QVariant(KLine::responseType))
        return;
    const QVariantList candles = data.toList();
    if (candles.isEmpty())
        return;
    // Every candle carries the id of the request; the first candle's is used.
    const QString clientMsgID = candles.first().toMap().value(Tessar_Fields::System::clientMsgID).toString();
    emit signalKLineDataRcv(clientMsgID, toMaps(candles));
}

void WebMsgCenter::ProcAsyncCallBack(int id, QString name, QVariant type, QVariant data)
{
    Q_UNUSED(id)
    Q_UNUSED(name)
    Q_UNUSED(type)
    Q_UNUSED(data)
}
