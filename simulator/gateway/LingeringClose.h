#pragma once

#include <QObject>

class QTcpSocket;

namespace sim {

/// To be called when the last byte for the peer has been written and just before the socket is closed.
/// A socket that is closed while its peer still sends is reset by the system, and the reset destroys what the peer
/// has not read yet: the very frame that tells why. So this keeps the connection open behind the socket, half closed,
/// and throws away what comes until the peer has ended it too, for at most two seconds.
void lingerOnClose(const QTcpSocket &socket, QObject *parent);

} // namespace sim
