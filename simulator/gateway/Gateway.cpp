#include "gateway/Gateway.h"

#include "gateway/HttpConnection.h"
#include "gateway/PageConnection.h"

#include <QTcpSocket>
#include <QWebSocket>

namespace sim {

namespace {

constexpr quint16 kHttpPort = 80; // an origin does not contain this port

} // namespace

Gateway::Gateway(const QString &root, const QStringList &allowedOrigins, std::chrono::milliseconds httpDeadline)
    : m_files(root)
    , m_httpDeadline(httpDeadline)
    , m_webSockets(QStringLiteral("varnel-simulator"), QWebSocketServer::NonSecureMode)
{
    for (const QString &origin : allowedOrigins)
        m_allowedOrigins.insert(origin.toUtf8());
    connect(&m_server, &QTcpServer::newConnection, this, &Gateway::acceptConnections);
    connect(&m_webSockets, &QWebSocketServer::newConnection, this, &Gateway::acceptPages);
}

Gateway::~Gateway()
{
    m_server.close();
    qDeleteAll(findChildren<PageConnection *>(QString(), Qt::FindDirectChildrenOnly));
}

bool Gateway::listen(quint16 port)
{
    if (!m_server.listen(QHostAddress::LocalHost, port))
        return false;
    const QByteArray suffix = this->port() == kHttpPort ? QByteArray() : ':' + QByteArray::number(this->port());
    m_allowedOrigins.insert("http://127.0.0.1" + suffix);
    m_allowedOrigins.insert("http://localhost" + suffix);
    return true;
}

void Gateway::acceptConnections()
{
    while (QTcpSocket *socket = m_server.nextPendingConnection()) {
        auto *connection = new HttpConnection(socket, m_files, m_allowedOrigins, m_httpDeadline, this);
        connect(connection, &HttpConnection::wantsWebSocket, this, &Gateway::shakeHands);
    }
}

void Gateway::shakeHands(QTcpSocket *socket)
{
    m_handshakes.insert(socket->peerPort(), socket);
    m_webSockets.handleConnection(socket);
}

void Gateway::acceptPages()
{
    while (QWebSocket *socket = m_webSockets.nextPendingConnection())
        new PageConnection(socket, m_handshakes.take(socket->peerPort()), ++m_lastPage, this);
}

} // namespace sim
