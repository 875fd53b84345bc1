#include "bridge/DataThread.h"

#include "bridge/HandlerTable.h"
#include "common/PageArguments.h"
#include "common/Reply.h"
#include "dataservice/DataProcess.h"
#include "msgcenter/WebMsgCenter.h"

#include "CommonQuotaHandler.h"
#include "VarnelCefView.h"

#include <QDebug>
#include <QPointer>

using namespace PageArguments;
using namespace WebConstants;

DataThread::DataThread(VarnelCefView *view) : QObject(view)
{
    m_thread.setObjectName(QStringLiteral("DataThread"));
    // Meant: with a view as parent Qt refuses the move, with a warning, and the object stays where it is, so
    // that calls are answered before onInvokeMethod returns.
    moveToThread(&m_thread);
    m_thread.start(QThread::InheritPriority);
    m_view = view;

    DataProcess::instance()->init();
    connect(
        WebMsgCenter::instance(), &WebMsgCenter::signalKLineDataRcv, this,
        [this](const QString &requestId, const QList<QVariantMap> &data) { receiveKLines(requestId, data); },
        Qt::AutoConnection);
}

DataThread::~DataThread()
{
    qCDebug(lcWebSdk) << "DataThread::~DataThread";
    m_thread.quit();
    m_thread.wait(3000);
}

bool DataThread::onInvokeMethod(int browserId, int frameId, const QString &method, const QVariantList &args)
{
    Q_UNUSED(browserId)
    Q_UNUSED(frameId)
    static const HandlerTable handlers(staticMetaObject);
    return handlers.invoke(this, method, args);
}

void DataThread::setView(VarnelCefView *view)
{
    m_view = view;
}

template <typename... Readings, typename Query>
void DataThread::answer(const QString &replyEvent, const QVariantList &args, Query query)
{
    if (!m_view)
        return;
    // The host may spin the event loop during the query. The user may close the page then, which deletes this object,
    // or the host may replace the view.
    const QPointer<DataThread> self(this);
    const QString reply = PageArguments::answer<Readings...>(args, query, DataProcess::instance());
    if (VarnelCefView *const view = self ? self->m_view.load() : nullptr)
        Reply::send(view, replyEvent, reply);
}

namespace {

/// The quote is fetched here; the data service only packs it.
QString currentTick(DataProcess *process, const QString &uuid, const QString &symbol)
{
    return process->processTick(uuid, symbol, CommonQuotaHandler::instance()->GetQuotaSnapshot(symbol, 0), false);
}

} // namespace

// One line for each call: its reply, the readings of its parameters after the uuid, and what answers it.
// clang-format off
void DataThread::Data_getToken_REQ(const QVariantList &args)                { answer<>                                                (ReplyEvent::Data_getToken,                 args, &DataProcess::processToken); }
void DataThread::Data_getSymbolDetail_REQ(const QVariantList &args)         { answer<Text>                                            (ReplyEvent::Data_getSymbolDetail,          args, &DataProcess::processSymbolDetail); }
void DataThread::Data_getCurrentTick_REQ(const QVariantList &args)          { answer<Text>                                            (ReplyEvent::Data_getCurrentTick,           args, currentTick); }
void DataThread::Data_getFundAccountList_REQ(const QVariantList &args)      { answer<Integer>                                         (ReplyEvent::Data_getFundAccountList,       args, &DataProcess::processFundAccountList); }
void DataThread::Data_getTraderList_REQ(const QVariantList &args)           { answer<>                                                (ReplyEvent::Data_getTraderList,            args, &DataProcess::processTraderList); }
void DataThread::Data_getLoginTrader_REQ(const QVariantList &args)          { answer<>                                                (ReplyEvent::Data_getLoginTrader,           args, &DataProcess::processLoginTrader); }
void DataThread::Data_getSymbolList_REQ(const QVariantList &args)           { answer<Variant>                                         (ReplyEvent::Data_getSymbolList,            args, &DataProcess::processSymbolList); }
void DataThread::Data_getSymbolListWithDetail_REQ(const QVariantList &args) { answer<Variant>                                         (ReplyEvent::Data_getSymbolListWithDetail,  args, &DataProcess::processSymbolListWithDetail); }
void DataThread::Data_getEntrustList_REQ(const QVariantList &args)          { answer<Variant, Integer, Integer>                       (ReplyEvent::Data_getEntrustList,           args, &DataProcess::processEntrustList); }
void DataThread::Data_getExecutionList_REQ(const QVariantList &args)        { answer<Variant, Integer, Integer>                       (ReplyEvent::Data_getExecutionList,         args, &DataProcess::processExecutionList); }
void DataThread::Data_getPositionList_REQ(const QVariantList &args)         { answer<CommaList, Text>                                 (ReplyEvent::Data_getPositionList,          args, &DataProcess::processPositionList); }
void DataThread::Data_getAsset_REQ(const QVariantList &args)                { answer<Text>                                            (ReplyEvent::Data_getAsset,                 args, &DataProcess::processAsset); }
void DataThread::Data_getTradableQty_REQ(const QVariantList &args)          { answer<Text, Text, Text, Text, Text, Text, Text>        (ReplyEvent::Data_getTradableQty,           args, &DataProcess::processTradableQty); }
void DataThread::Data_getSetting_REQ(const QVariantList &args)              { answer<Text>                                            (ReplyEvent::Data_getSetting,               args, &DataProcess::processGetSetting); }
void DataThread::Data_saveSetting_REQ(const QVariantList &args)             { answer<Text, Text>                                      (ReplyEvent::Data_saveSetting,              args, &DataProcess::processSaveSetting); }
void DataThread::Data_getPermission_REQ(const QVariantList &args)           { answer<Text, Text>                                      (ReplyEvent::Data_getPermission,            args, &DataProcess::processGetPermission); }
void DataThread::Data_openPermissionMenu_REQ(const QVariantList &args)      { answer<>                                                (ReplyEvent::Data_openPermissionMenu,       args, &DataProcess::processOpenPermissionMenu); }
void DataThread::Data_getUpsDownsAnalysis_REQ(const QVariantList &args)     { answer<Text, Text, Text>                                (ReplyEvent::Data_getUpsDownsAnalysis,      args, &DataProcess::processUpsDowns); }
void DataThread::Data_getOPStation_REQ(const QVariantList &args)            { answer<Text, Text>                                      (ReplyEvent::Data_getOPStation,             args, &DataProcess::processGetOPStation); }
// clang-format on

/// Answered later, by receiveKLines. Meant: a short list gets no reply, unlike those of the other calls.
void DataThread::Data_getKLineData_REQ(const QVariantList &args)
{
    if (args.size() < 5)
        return;
    const EMD_KLINE_PERIOD period = Text::read(args.at(4)) == Flag::one ? MinuteKLinePeriod : DayKLinePeriod;
    const QString uuid = Text::read(args.at(0));
    const QPointer<DataThread> self(this); // as in answer()
    QString requestId;
    WebMsgCenter::instance()->asyncRequestKLineData(Text::read(args.at(1)), Text::read(args.at(2)),
                                                    Text::read(args.at(3)), period, requestId);
    if (self)
        m_pendingKLines[requestId] = uuid;
}

void DataThread::receiveKLines(const QString &requestId, const QList<QVariantMap> &data)
{
    if (!m_pendingKLines.contains(requestId))
        return; // another view's request
    const QString uuid = m_pendingKLines.take(requestId);
    VarnelCefView *const view = m_view;
    if (!view)
        return;
    Reply::send(view, ReplyEvent::Data_getKLineData, Reply::text(uuid, Reply::toList(data)));
}
