#pragma once

#include "gateway/HttpFiles.h"

#include <QObject>
#include <QSet>
#include <QTimer>

#include <chrono>

class QTcpSocket;

namespace sim {

/// One connection until its request is clear: it answers a request for a file itself and gives away the socket of
/// one that wants a WebSocket.
/// Made by the Gateway for each connection, deletes itself; user-interface thread only. It never takes a byte of the
/// head off the socket, so that whoever gets the socket can read it again.
class HttpConnection : public QObject {
    Q_OBJECT
public:
    static constexpr int kMaxHead = 16 * 1024;

    /// Takes the socket over. allowedOrigins: of pages that may open a WebSocket. deadline: for the head to come, and
    /// again for the answer to go.
    HttpConnection(QTcpSocket *socket, const HttpFiles &files, const QSet<QByteArray> &allowedOrigins,
                   std::chrono::milliseconds deadline, QObject *parent);

signals:
    /// The socket, with its head still unread, has no parent any more: the receiver owns it.
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
