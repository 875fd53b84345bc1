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

/// The simulator's one port: static files over HTTP, and the WebSocket of each page.
/// Made and destroyed by main on the user-interface thread, where all of it runs. It listens on the loopback address
/// only, and accepts no WebSocket from a page of an origin that is not its own or allowed: pages place orders here.
class Gateway : public QObject {
    Q_OBJECT
public:
    /// root: the folder of the static files, or empty. allowedOrigins: besides its own. A client must have sent the
    /// head of its request, and then taken the answer, within the deadline.
    Gateway(const QString &root, const QStringList &allowedOrigins,
            std::chrono::milliseconds httpDeadline = std::chrono::seconds(10));

    /// Closes every page.
    ~Gateway() override;

    /// Port 0 means any free one. On failure false, and errorString() says why.
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
    QHash<quint16, QPointer<QTcpSocket>> m_handshakes; ///< by the peer's port: a QWebSocket hides what is below it
    int m_lastPage = 0;
};

} // namespace sim
