#include "gateway/LingeringClose.h"

#include <QTcpSocket>
#include <QTimer>

#ifdef Q_OS_UNIX
#    include <fcntl.h>
#    include <sys/socket.h>
#    include <unistd.h>
#endif

namespace sim {

#ifdef Q_OS_UNIX

namespace {

constexpr int kLingerMs = 2000;

} // namespace

void lingerOnClose(const QTcpSocket &socket, QObject *parent)
{
    if (socket.state() != QAbstractSocket::ConnectedState || socket.bytesToWrite() > 0)
        return;
    const int descriptor = fcntl(int(socket.socketDescriptor()), F_DUPFD_CLOEXEC, 0);
    if (descriptor < 0)
        return;
    ::shutdown(descriptor, SHUT_WR);

    auto *rest = new QTcpSocket(parent);
    QObject::connect(rest, &QTcpSocket::readyRead, rest, [rest] { rest->skip(rest->bytesAvailable()); });
    QObject::connect(rest, &QTcpSocket::disconnected, rest, &QObject::deleteLater);
    QTimer::singleShot(kLingerMs, rest, &QObject::deleteLater);
    if (!rest->setSocketDescriptor(descriptor)) {
        ::close(descriptor);
        rest->deleteLater();
    }
}

#else

// Not implemented elsewhere: a peer that is still sending may miss the reason.
void lingerOnClose(const QTcpSocket &, QObject *) {}

#endif

} // namespace sim
