#pragma once

#include <QObject>

class QTcpSocket;

namespace sim {

/// To be called after the last byte for the peer was written, just before the socket is closed.
/// When a socket is closed while its peer still sends, the system resets the connection, and the peer loses what it has
/// not read yet, such as the close frame with the reason. So this keeps a duplicate of the socket half open and
/// discards incoming data until the peer closes too, for at most two seconds.
void lingerOnClose(const QTcpSocket &socket, QObject *parent);

} // namespace sim
