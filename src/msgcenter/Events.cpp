#include "msgcenter/WebMsgCenter.h"

#include "common/JsonWriter.h"
#include "common/Logging.h"
#include "common/WebConstants.h"
#include "dataservice/DataProcess.h"
#include "msgcenter/StrategyCalls.h"
#include "msgcenter/TradingEvents.h"

#include "CUnPackMessageCommon.h"
#include "Orlo_Keys.h"
#include "Tessar_Fields.h"
#include "VarnelBusinessDataInterface.h"

#include <QDebug>
#include <QTimer>

#include <algorithm>

using namespace WebConstants;

int strategyEventId()
{
    return VarnelBusinessDataInterface::GetOrloEventMsgIdByStr(Orlo_Keys::EventMsgName::VELOX_TRANS_MSG_OUT);
}

// Intake, on the bus thread: of the object's state only the published registry and what a mutex guards may be used.
void WebMsgCenter::ProcEventMsg(QString eventName, QVariant type, QVariant data)
{
    Q_UNUSED(eventName)
    const int id = type.toInt();
    const std::shared_ptr<const ViewRegistry> registered = registry();
    qCDebug(lcWebSdk) << "WebMsgCenter::ProcEventMsg" << registered->views.size() << id;
    const bool isTradingEvent =
        std::find(std::begin(tradingEvents), std::end(tradingEvents), id) != std::end(tradingEvents);
    if (!isTradingEvent && id != strategyEventId())
        return;
    if (registered->views.isEmpty()) {
        qCDebug(lcWebSdk) << "WebMsgCenter::ProcEventMsg"
                          << "object empty";
        if (!isTradingEvent) {
            const std::lock_guard<std::mutex> lock(m_strategyMutex);
            m_strategyCalls->answerLost();
        }
        return;
    }
    if (id == OrdersLoadedEvent) {
        // Meant: straight from the bus thread, and without an argument.
        return pushTo(*registered, Push::orderLoaded, {});
    }
    CUnPackMessageCommon unpack;
    unpack.SetUnPackMsg(data, false);
    emit signalParseEventMsg(type, unpack.GetRowValue());
}

void WebMsgCenter::slotParseEventMsg(const QVariant &type, const QVariantMap &dataMap)
{
    const int id = type.toInt();
    switch (id) {
    case AssetEvent:
        return pushAsset(dataMap);
    case EntrustEvent:
    case EntrustChangedEvent:
        return collect(entrustBatch(), dataMap.value(Tessar_Fields::Security::orderID).toString(),
                       DataProcess::instance()->getEntrustOrderMsg(dataMap));
    case ExecutionEvent:
    case ExecutionChangedEvent:
        return collect(executionBatch(), dataMap.value(Tessar_Fields::Security::execID).toString(),
                       DataProcess::instance()->getExecutionOrderMsg(dataMap));
    case PositionEvent:
        return pushToAll(Push::positionUpdate, {DataProcess::instance()->getPositionMsg(dataMap)});
    default:
        if (id == strategyEventId())
            parseStrategyEvent(dataMap);
    }
}

void WebMsgCenter::pushAsset(const QVariantMap &dataMap)
{
    const QString tradingAccount = dataMap.value(Tessar_Fields::UserAccount::tradingAccount).toString();
    const QList<tagUserAccountInfo> accounts =
        VarnelBusinessDataInterface::GetAccountInfoListFromTrade(tradingAccount, true);
    // Meant: for an account that the host does not know, the empty text is pushed.
    pushToAll(Push::assetUpdate,
              {accounts.isEmpty() ? QString() : DataProcess::instance()->getAssetMsg(accounts.first().fundAccount)});
}

WebMsgCenter::Batch WebMsgCenter::entrustBatch()
{
    return {m_entrustCache, m_entrustOrder, m_entrustMutex, m_entrustTimer};
}

WebMsgCenter::Batch WebMsgCenter::executionBatch()
{
    return {m_executionCache, m_executionOrder, m_executionMutex, m_executionTimer};
}

void WebMsgCenter::collect(const Batch &batch, const QString &id, const QString &record)
{
    {
        const std::lock_guard<std::mutex> lock(batch.mutex);
        const auto pending =
            batch.cache.find(id); // present here means present in the order list, which need not be searched
        if (pending != batch.cache.end()) {
            *pending = record;
        } else {
            batch.cache.insert(id, record);
            batch.order.append(id);
        }
    }
    if (!batch.timer->isActive()) // a running window is not extended
        batch.timer->start();
}

void WebMsgCenter::flush(const Batch &batch, const QString &event, const char *operation)
{
    JsonWriter json;
    {
        const std::lock_guard<std::mutex> lock(batch.mutex);
        qCDebug(lcWebSdk) << operation << batch.order.size() << batch.cache.size();
        json.array(batch.order, [&](const QString &id) { json.json(batch.cache.value(id)); });
        batch.cache.clear();
        batch.order.clear();
    }
    pushToAll(event, {json.take()});
}

void WebMsgCenter::slotEntrustTimeout()
{
    flush(entrustBatch(), Push::entrustUpdate, "WebMsgCenter::slotEntrustTimeout");
}

void WebMsgCenter::slotExecutionTimeout()
{
    flush(executionBatch(), Push::executionUpdate, "WebMsgCenter::slotExecutionTimeout");
}
