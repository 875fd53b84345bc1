#pragma once

#include "Await.h"
#include "gateway/Gateway.h"

#include <QHostAddress>
#include <QTcpSocket>

#include <gtest/gtest.h>

/// Waits until the server has closed the connection, and returns all that it sent.
inline QByteArray answerOf(QTcpSocket &socket)
{
    EXPECT_TRUE(await([&] { return socket.state() == QAbstractSocket::UnconnectedState; }));
    return socket.readAll();
}

/// Sends these bytes as they are.
inline QByteArray answerTo(const sim::Gateway &gateway, const QByteArray &bytes)
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, gateway.port());
    socket.write(bytes);
    return answerOf(socket);
}

inline QByteArray hostOf(const sim::Gateway &gateway)
{
    return "127.0.0.1:" + QByteArray::number(gateway.port());
}

/// The field without which no request is answered.
inline QByteArray hostField(const sim::Gateway &gateway)
{
    return "Host: " + hostOf(gateway) + "\r\n";
}

/// The same with the field Host behind the first line.
inline QByteArray exchange(const sim::Gateway &gateway, QByteArray request)
{
    return answerTo(gateway, request.insert(request.indexOf("\r\n") + 2, hostField(gateway)));
}

inline int status(const QByteArray &answer)
{
    return answer.split(' ').value(1).toInt();
}

inline QByteArray body(const QByteArray &answer)
{
    return answer.mid(answer.indexOf("\r\n\r\n") + 4);
}

/// The value of a field of the answer; empty without it.
inline QByteArray field(const QByteArray &answer, const QByteArray &name)
{
    const int begin = answer.indexOf("\r\n" + name + ": ") + name.size() + 4;
    return begin < name.size() + 4 ? QByteArray() : answer.mid(begin, answer.indexOf("\r\n", begin) - begin);
}
