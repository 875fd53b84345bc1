#pragma once

#include "gateway/HttpFiles.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QTcpServer>
#include <QWebSocketServer>

#include <chrono>

namespace sim {

/// The server on the simulator's port: static files over HTTP, and a WebSocket for each page.
/// Made and destroyed by main on the user-interface thread, where everything runs. It listens on the loopback address
/// only. It accepts WebSockets only from pages of its own origin and of the allowed origins, because pages can place
/// orders.
class Gateway : public QObject {
    Q_OBJECT
public:
    /// root: the folder of the static files, or empty. allowedOrigins: in addition to its own. httpDeadline: for a
    /// client to send the head of its request, and again to receive the answer.
    Gateway(const QString &root, const QStringList &allowedOrigins,
            std::chrono::milliseconds httpDeadline = std::chrono::seconds(10));

    /// Closes all pages.
    ~Gateway() override;

    /// Port 0 means any free port. On failure it returns false, and errorString() says why.
    bool listen(quint16 port);

    quint16 port() const { return m_server.serverPort(); }
    QString errorString() const { return m_server.errorString(); }

private:
    void acceptConnections();
    void shakeHands(QTcpSocket *socket);
    void acceptPages();

    const HttpFiles m_files;
    const std::chrono::milliseconds m_httpDeadline;
    QSet<QByteArray> m_allowedOrigins; ///< constant after listen()
    QTcpServer m_server;
    QWebSocketServer m_webSockets; ///< never listens: it shakes hands on sockets that m_server accepted
    QHash<quint16, QPointer<QTcpSocket>>
        m_handshakes; ///< by the peer's port, because a QWebSocket does not show its socket
    int m_lastPage = 0;
};

} // namespace sim
