#include "gateway/HttpConnection.h"

#include "gateway/Logging.h"

#include <QTcpSocket>

namespace sim {

HttpConnection::HttpConnection(QTcpSocket *socket, const HttpFiles &files, const QSet<QByteArray> &allowedOrigins,
                               std::chrono::milliseconds deadline, QObject *parent)
    : QObject(parent), m_socket(socket), m_files(files), m_allowedOrigins(allowedOrigins)
{
    m_socket->setParent(this);
    m_socket->setReadBufferSize(kMaxHead + 1); // further bytes stay in the system's buffer
    connect(m_socket, &QTcpSocket::readyRead, this, &HttpConnection::readHead);
    connect(m_socket, &QTcpSocket::disconnected, this, &QObject::deleteLater);
    m_deadline.setSingleShot(true);
    connect(&m_deadline, &QTimer::timeout, this, [this] {
        if (m_decided)
            m_socket->abort();
        else
            send(HttpReply::of(408));
    });
    m_deadline.start(deadline);
    readHead(); // for data that arrived before the signal was connected
}

void HttpConnection::readHead()
{
    if (m_decided)
        return;
    const QByteArray text = m_socket->peek(kMaxHead + 1);
    const int end = text.indexOf("\r\n\r\n");
    if (end < 0) {
        if (text.size() > kMaxHead)
            send(HttpReply::of(431));
        return;
    }
    if (const auto head = RequestHead::parse(text.left(end + 4)))
        decide(*head);
    else
        send(HttpReply::of(400));
}

void HttpConnection::decide(const RequestHead &head)
{
    if (head.path() != "/view") {
        send(m_files.answer(head), head.method != "HEAD");
    } else if (head.method != "GET") {
        send(HttpReply::of(405, "Allow: GET\r\n"), head.method != "HEAD");
    } else if (!head.names("upgrade", "websocket") || !head.names("connection", "upgrade")) {
        send(HttpReply::of(426, "Upgrade: websocket\r\n"));
    } else if (head.values("sec-websocket-key").size() != 1) {
        send(HttpReply::of(400));
    } else if (!isAllowed(head)) {
        qCWarning(gatewayLog, "A WebSocket of origin \"%s\" was refused; --allow-origin lets it in",
                  head.values("origin").value(0).left(200).constData());
        send(HttpReply::of(403));
    } else {
        m_decided = true;
        m_socket->disconnect(this);
        m_socket->setParent(nullptr);
        m_socket->setReadBufferSize(0);
        emit wantsWebSocket(m_socket);
        deleteLater();
    }
}

bool HttpConnection::isAllowed(const RequestHead &head) const
{
    const QList<QByteArray> origins = head.values("origin");
    return origins.size() == 1 && m_allowedOrigins.contains(origins.first());
}

void HttpConnection::send(const HttpReply &reply, bool withBody)
{
    m_decided = true;
    m_deadline.start(); // again, for a client that does not read the answer
    m_socket->write(reply.toBytes(withBody));
    m_socket->disconnectFromHost();
}

} // namespace sim
