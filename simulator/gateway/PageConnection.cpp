#include "gateway/PageConnection.h"

#include "gateway/EventFrame.h"
#include "gateway/LingeringClose.h"
#include "gateway/Logging.h"
#include "gateway/MessageCenterCalls.h"
#include "host/QCefViewAccess.h"
#include "msgcenter/WebMsgCenter.h"
#include "terminal/Terminal.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpSocket>
#include <QWebSocket>

namespace sim {

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

PageConnection::PageConnection(QWebSocket *socket, const QPointer<QTcpSocket> &tcp, int number, QObject *parent)
    : QObject(parent)
    , m_socket(socket)
    , m_number(number)
    , m_data(new DataThread(&m_view))
    , m_trade(new TradeThread(&m_view))
{
    m_socket->setParent(this);
    m_socket->setMaxAllowedIncomingFrameSize(kMaxFrame);
    m_socket->setMaxAllowedIncomingMessageSize(kMaxFrame);
    connect(m_socket, &QWebSocket::textMessageReceived, this, &PageConnection::receive);
    connect(m_socket, &QWebSocket::binaryMessageReceived, this, [this] { refuse(QStringLiteral("a binary frame")); });
    connect(m_socket, &QWebSocket::aboutToClose, this, [tcp, parent] {
        if (tcp)
            lingerOnClose(*tcp, parent);
    });
    connect(m_socket, &QWebSocket::disconnected, this, &QObject::deleteLater);
    QCefViewAccess::setPage(m_view, [this](const QCefEvent &event) { send(event); });
    WebMsgCenter::instance()->reg(&m_view);
    qCInfo(gatewayLog, "page %d connected", m_number);
}

PageConnection::~PageConnection()
{
    WebMsgCenter::instance()->unReg(&m_view);
    // The bus thread may be delivering to this view at this moment.
    Terminal::instance().bus()->awaitReturn();
    m_socket->disconnect(this);
    m_socket->close(QWebSocketProtocol::CloseCodeGoingAway);
    qCInfo(gatewayLog, "page %d gone", m_number);
}

void PageConnection::receive(const QString &frame)
{
    if (m_refused)
        return;
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(frame.toUtf8(), &error);
    if (error.error != QJsonParseError::NoError)
        return refuse(QStringLiteral("not JSON"));
    if (!document.isObject())
        return refuse(QStringLiteral("not a JSON object"));
    const QJsonObject object = document.object();
    const QJsonValue method = object.value(QLatin1String("invoke"));
    const QJsonValue args = object.value(QLatin1String("args"));
    if (!method.isString())
        return refuse(QStringLiteral("\"invoke\" is not a text"));
    if (!args.isArray())
        return refuse(QStringLiteral("\"args\" is not an array"));
    const QCefViewAccess::Call call(m_view);
    invoke(method.toString(), args.toArray().toVariantList());
}

void PageConnection::refuse(const QString &reason)
{
    if (m_refused)
        return;
    m_refused = true;
    qCWarning(gatewayLog, "page %d: bad frame: %s", m_number, qUtf8Printable(reason));
    m_socket->close(QWebSocketProtocol::CloseCodeWrongDatatype, QStringLiteral("bad frame: ") + reason);
}

void PageConnection::invoke(const QString &method, const QVariantList &args)
{
    for (const Route &route : kRoutes) {
        if (method.startsWith(route.prefix) && (this->*route.call)(method, args))
            return;
    }
    qCInfo(gatewayLog, "page %d: nobody handles \"%s\"", m_number, qUtf8Printable(method.left(100)));
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

void PageConnection::send(const QCefEvent &event)
{
    // Only earlier data counts, so that one long answer does not close the connection.
    if (m_socket->bytesToWrite() > kMaxBacklog)
        m_socket->flush();
    if (m_socket->bytesToWrite() > kMaxBacklog) {
        qCWarning(gatewayLog, "page %d has stopped reading: dropped", m_number);
        return m_socket->abort();
    }
    m_socket->sendTextMessage(eventFrame(event));
}

} // namespace sim
