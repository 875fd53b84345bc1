// The baseline of the browser benchmark: a WebSocket that does nothing but answer, by Qt's own classes, on the event
// loop of its only thread.
//
// The first frame of a connection is its sample, a frame that the simulator sent. At /echo every later frame is
// answered with the sample; at /push it is sent over and over, as fast as the socket takes it.

#include <QApplication>
#include <QSocketNotifier>
#include <QWebSocket>
#include <QWebSocketServer>

#include <cstdio>
#include <unistd.h>

namespace {

/// So much waits at most for a page that is pushed to: always more to send, and never much.
constexpr qint64 kBacklog = qint64{256} * 1024;

void push(QWebSocket *socket, const QString &sample)
{
    while (socket->isValid() && socket->bytesToWrite() < kBacklog)
        socket->sendTextMessage(sample);
}

/// Takes the socket over, until it has ended.
void serve(QWebSocket *socket)
{
    const bool pushes = socket->requestUrl().path() == QLatin1String("/push");
    QObject::connect(socket, &QWebSocket::disconnected, socket, &QObject::deleteLater);
    QObject::connect(socket, &QWebSocket::textMessageReceived, socket,
                     [socket, pushes, sample = QString()](const QString &frame) mutable {
                         if (!sample.isNull()) {
                             socket->sendTextMessage(sample);
                             return;
                         }
                         sample = frame;
                         if (!pushes)
                             return;
                         QObject::connect(socket, &QWebSocket::bytesWritten, socket,
                                          [socket, sample] { push(socket, sample); });
                         push(socket, sample);
                     });
}

/// Whoever started the server holds the other end: it must not outlive him.
void quitWhenInputCloses()
{
    auto *notifier = new QSocketNotifier(STDIN_FILENO, QSocketNotifier::Read, qApp);
    QObject::connect(notifier, &QSocketNotifier::activated, qApp, [notifier] {
        char ignored[64];
        if (read(STDIN_FILENO, ignored, sizeof ignored) > 0)
            return;
        notifier->setEnabled(false);
        QCoreApplication::quit();
    });
}

} // namespace

int main(int argc, char **argv)
{
    // The simulator's event loop is that of an application with windows.
    const QApplication application(argc, argv);
    QWebSocketServer server(QStringLiteral("websocket_echo"), QWebSocketServer::NonSecureMode);
    QObject::connect(&server, &QWebSocketServer::newConnection, &server, [&server] {
        while (QWebSocket *socket = server.nextPendingConnection())
            serve(socket);
    });
    if (!server.listen(QHostAddress::LocalHost)) {
        std::fprintf(stderr, "websocket_echo: cannot listen: %s\n", qUtf8Printable(server.errorString()));
        return 1;
    }
    quitWhenInputCloses();
    std::printf("Qt %s\nlistening on ws://127.0.0.1:%d/\n", qVersion(), int(server.serverPort()));
    std::fflush(stdout);
    return QApplication::exec();
}
