#include "bridge/TradeThread.h"

#include "bridge/HandlerTable.h"
#include "common/PageArguments.h"
#include "common/Reply.h"
#include "trade/TradeProcess.h"

#include "VarnelCefView.h"

#include <QDebug>
#include <QPointer>

using namespace PageArguments;
using namespace WebConstants;

TradeThread::TradeThread(VarnelCefView *view) : QObject(view)
{
    m_thread.setObjectName(QStringLiteral("TradeThread"));
    // Meant: with a view as parent Qt refuses the move, with a warning, and the object stays where it is, so
    // that calls are answered before onInvokeMethod returns.
    moveToThread(&m_thread);
    m_thread.start(QThread::InheritPriority);
    m_view = view;

    TradeProcess::instance()->init();
}

TradeThread::~TradeThread()
{
    m_thread.quit();
    m_thread.wait(3000);
}

bool TradeThread::onInvokeMethod(int browserId, int frameId, const QString &method, const QVariantList &args)
{
    Q_UNUSED(browserId)
    Q_UNUSED(frameId)
    static const HandlerTable handlers(staticMetaObject);
    const bool isKnown = handlers.invoke(this, method, args);
    qCDebug(lcWebSdk) << "TradeThread::onInvokeMethod" << method; // whatever came of it
    return isKnown;
}

template <typename... Readings, typename Order>
void TradeThread::answer(const Operation &operation, const QString &replyEvent, const QVariantList &args, Order order)
{
    if (!m_view)
        return;
    // The host may ask the user a modal question during the order. The user may close the page then, which deletes this
    // object with its view: the order stays placed and is not answered.
    const QPointer<TradeThread> self(this);
    const QString reply = PageArguments::answer<Readings...>(args, order, TradeProcess::instance());
    if (lcWebSdk().isDebugEnabled())
        logLine(QtDebugMsg, operation) << reply;
    if (self)
        Reply::send(m_view, replyEvent, reply);
}

// One line for each call: its log line, its reply, the readings of its parameters after the uuid, and what answers it.
// clang-format off
void TradeThread::Trade_reqCancelOrder_REQ(const QVariantList &args)  { answer<CommaList>                                      (VARNEL_OPERATION(TradeThread, Trade_reqCancelOrder_REQ),  ReplyEvent::Trade_reqCancelOrder,  args, &TradeProcess::processCancelOrders); }
void TradeThread::Trade_insertOrder_REQ(const QVariantList &args)     { answer<Text, Text, Text, Text, Text, Text, Text, Text> (VARNEL_OPERATION(TradeThread, Trade_insertOrder_REQ),     ReplyEvent::Trade_insertOrder,     args, &TradeProcess::processInsertOrder); }
void TradeThread::Trade_insertOrderList_REQ(const QVariantList &args) { answer<Text, Text, Text>                               (VARNEL_OPERATION(TradeThread, Trade_insertOrderList_REQ), ReplyEvent::Trade_insertOrderList, args, &TradeProcess::processInsertOrderList); }
// clang-format on
