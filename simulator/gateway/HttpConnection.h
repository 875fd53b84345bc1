#pragma once

#include "gateway/HttpFiles.h"

#include <QObject>
#include <QSet>
#include <QTimer>

#include <chrono>

class QTcpSocket;

namespace sim {

/// A connection up to its first request: it answers a request for a file, and hands over the socket of a request for a
/// WebSocket.
/// Made by the Gateway for each connection; deletes itself; user-interface thread only. It only peeks at the head of
/// the request, so that the WebSocket server can read it again.
class HttpConnection : public QObject {
    Q_OBJECT
public:
    static constexpr int kMaxHead = 16 * 1024;

    /// Takes ownership of the socket. allowedOrigins: of pages that may open a WebSocket. deadline: for the head to
    /// arrive, and again for the answer to be sent.
    HttpConnection(QTcpSocket *socket, const HttpFiles &files, const QSet<QByteArray> &allowedOrigins,
                   std::chrono::milliseconds deadline, QObject *parent);

signals:
    /// The receiver owns the socket. The head of the request is still unread.
    void wantsWebSocket(QTcpSocket *socket);

private:
    void readHead();
    void decide(const RequestHead &head);
    void send(const HttpReply &reply, bool withBody = true);
    bool isAllowed(const RequestHead &head) const;

    QTcpSocket *const m_socket;
    const HttpFiles &m_files;
    const QSet<QByteArray> &m_allowedOrigins;
    QTimer m_deadline;
    bool m_decided = false;
};

} // namespace sim
