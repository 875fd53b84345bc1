#include "gateway/PageConnection.h"

#include "gateway/EventLog.h"
#include "gateway/Logging.h"
#include "gateway/MessageCenterCalls.h"
#include "gateway/WantedQuotes.h"
#include "host/QCefViewAccess.h"
#include "msgcenter/WebMsgCenter.h"
#include "terminal/Terminal.h"
#include "traffic/Scope.h"

#include <algorithm>

namespace sim {

namespace {

constexpr int kGoingAway = 1001; // a code of the WebSocket protocol

void logPage(traffic::Entry::Kind kind, int number)
{
    traffic::Entry entry;
    entry.kind = kind;
    entry.page = number;
    traffic::log().add(std::move(entry));
}

} // namespace

struct PageConnection::Route {
    QLatin1String prefix;
    bool (PageConnection::*call)(const QString &method, const QVariantList &args); ///< false: nobody handles it
};

const PageConnection::Route PageConnection::kRoutes[] = {
    {QLatin1String("Data_"), &PageConnection::callData},
    {QLatin1String("Trade_"), &PageConnection::callTrade},
    {QLatin1String("Sub_"), &PageConnection::callMessageCenter},
    {QLatin1String("UnSub_"), &PageConnection::callMessageCenter},
    {QLatin1String("Vlx_"), &PageConnection::callMessageCenter},
};

PageConnection::PageConnection(std::shared_ptr<PageSocket> socket, QObject *parent, VarnelCefView *view)
    : QObject(parent)
    , m_socket(std::move(socket))
    , m_number(m_socket->number())
    , m_ownView(view ? nullptr : std::make_unique<VarnelCefView>())
    , m_view(view ? *view : *m_ownView)
    , m_data(new DataThread(&m_view))
    , m_trade(new TradeThread(&m_view))
{
    logPage(traffic::Entry::PageOpened, m_number);
    QCefViewAccess::setPage(
        m_view, [page = m_socket](const QCefEvent &event) { page->send(event, logEvent(page->number(), event)); });
    WebMsgCenter::instance()->reg(&m_view);
    qCInfo(gatewayLog, "page %d connected", m_number);
}

PageConnection::~PageConnection()
{
    WebMsgCenter::instance()->unReg(&m_view);
    // The bus thread may be delivering to this view at this moment.
    Terminal::instance().bus()->awaitReturn();
    // The view may live on, and show another page.
    WebMsgCenter::instance()->unsubscribeAll(&m_view);
    WantedQuotes::removeAll(&m_view);
    QCefViewAccess::setPage(m_view, {});
    delete m_data;
    delete m_trade;
    m_socket->close(kGoingAway, QString());
    logPage(traffic::Entry::PageClosed, m_number);
    qCInfo(gatewayLog, "page %d gone", m_number);
}

void PageConnection::receive(const CallFrame &frame)
{
    if (frame.closeCode == 0)
        return invoke(frame);
    qCWarning(gatewayLog, "page %d: %s", m_number, qUtf8Printable(frame.closeReason));
    m_socket->close(frame.closeCode, frame.closeReason);
}

void PageConnection::invoke(const CallFrame &frame)
{
    const Terminal::Moment moment(Terminal::instance());
    traffic::Entry entry;
    entry.kind = traffic::Entry::Call;
    entry.page = m_number;
    entry.name = frame.method;
    entry.uuid = frame.args.value(0).toString();
    entry.args = frame.args;
    entry.size = frame.size;
    traffic::PageCall pageCall(traffic::log(), entry);
    if (Terminal::instance().faults().take(Fault::DropInCall))
        m_socket->drop();
    const int number = m_number;
    const bool isHandled = call(frame.method, frame.args);
    pageCall.done(isHandled);
    if (!isHandled)
        qCInfo(gatewayLog, "page %d: nobody handles \"%s\"", number, qUtf8Printable(frame.method.left(100)));
}

bool PageConnection::call(const QString &method, const QVariantList &args)
{
    return std::any_of(std::begin(kRoutes), std::end(kRoutes), [&](const Route &route) {
        return method.startsWith(route.prefix) && (this->*route.call)(method, args);
    });
}

bool PageConnection::callData(const QString &method, const QVariantList &args)
{
    return m_data->onInvokeMethod(m_number, 0, method, args);
}

bool PageConnection::callTrade(const QString &method, const QVariantList &args)
{
    return m_trade->onInvokeMethod(m_number, 0, method, args);
}

bool PageConnection::callMessageCenter(const QString &method, const QVariantList &args)
{
    return MessageCenterCalls::call(&m_view, method, args);
}

} // namespace sim
