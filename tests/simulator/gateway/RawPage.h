#pragma once

#include "Await.h"
#include "gateway/Gateway.h"

#include <QHostAddress>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpSocket>
#include <QVector>

/// A page that speaks the WebSocket protocol by hand: it can stop reading, and it can break the rules.
class RawPage {
public:
    enum Opcode { Continuation = 0, Text = 1, Binary = 2, Close = 8, Ping = 9, Pong = 10 };
    static constexpr int kLast = 0x80; ///< added to the opcode: the last frame of a message

    struct Frame {
        int opcode;
        QByteArray payload;
    };

    explicit RawPage(const sim::Gateway &gateway, const QByteArray &path = "/view")
    {
        QObject::connect(&socket, &QTcpSocket::readyRead, [this] {
            if (m_reads)
                read();
        });
        socket.connectToHost(QHostAddress::LocalHost, gateway.port());
        const QByteArray host = "127.0.0.1:" + QByteArray::number(gateway.port());
        socket.write("GET " + path + " HTTP/1.1\r\nHost: " + host +
                     "\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
                     "Sec-WebSocket-Version: 13\r\nSec-WebSocket-Key: AAAAAAAAAAAAAAAAAAAAAA==\r\n"
                     "Origin: http://" +
                     host + "\r\n\r\n");
    }

    bool awaitOpen()
    {
        return await([&] { return m_isOpen; });
    }
    bool awaitFrames(int n)
    {
        return await([&] { return frames.size() >= n; });
    }
    bool awaitDisconnected()
    {
        return await([&] { return socket.state() == QAbstractSocket::UnconnectedState; });
    }

    /// One frame. first: opcode, and kLast for the last frame of a message.
    static QByteArray frame(int first, const QByteArray &payload, bool isMasked = true)
    {
        const int mask = isMasked ? 0x80 : 0;
        QByteArray bytes(1, char(first));
        int lengthBytes = 0;
        if (payload.size() < kTwoByteLength) {
            bytes += char(mask | payload.size());
        } else {
            const bool isShort = payload.size() <= 0xffff;
            bytes += char(mask | (isShort ? kTwoByteLength : kEightByteLength));
            lengthBytes = isShort ? 2 : 8;
        }
        while (lengthBytes-- > 0)
            bytes += char(qint64(payload.size()) >> (8 * lengthBytes));
        if (isMasked)
            bytes += QByteArray(4, '\0'); // which leaves the payload as it is
        return bytes + payload;
    }

    static QByteArray call(const char *method, const QJsonArray &args)
    {
        const QJsonObject object{{QStringLiteral("invoke"), QLatin1String(method)}, {QStringLiteral("args"), args}};
        return QJsonDocument(object).toJson(QJsonDocument::Compact);
    }

    void invoke(const char *method, const QJsonArray &args) { socket.write(frame(Text | kLast, call(method, args))); }

    /// From now on nothing is taken from the system's buffer.
    void stopReading()
    {
        m_reads = false;
        socket.setReadBufferSize(1);
    }

    void readAgain()
    {
        m_reads = true;
        socket.setReadBufferSize(0);
        read();
    }

    /// The code of the close frame; 0 without one.
    int closeCode() const
    {
        if (frames.isEmpty() || frames.last().opcode != Close || frames.last().payload.size() < 2)
            return 0;
        return (uchar(frames.last().payload[0]) << 8) | uchar(frames.last().payload[1]);
    }

    QJsonObject event(int i) const { return QJsonDocument::fromJson(frames[i].payload).object(); }

    QTcpSocket socket;
    QVector<Frame> frames;

private:
    static constexpr int kTwoByteLength = 126;
    static constexpr int kEightByteLength = 127;

    void read()
    {
        m_bytes += socket.readAll();
        if (!m_isOpen) {
            const int end = m_bytes.indexOf("\r\n\r\n");
            if (end < 0)
                return;
            m_isOpen = m_bytes.startsWith("HTTP/1.1 101 ");
            m_bytes.remove(0, end + 4);
        }
        int begin = 0;
        while (takeFrame(begin)) {
        }
        m_bytes.remove(0, begin);
    }

    /// Takes the frame that begins there, if it has come as a whole.
    bool takeFrame(int &begin)
    {
        int at = begin + 2;
        if (m_bytes.size() < at)
            return false;
        qint64 length = uchar(m_bytes[begin + 1]);
        if (length >= kTwoByteLength) {
            const int lengthBytes = length == kTwoByteLength ? 2 : 8;
            if (m_bytes.size() < at + lengthBytes)
                return false;
            length = 0;
            for (int i = 0; i < lengthBytes; ++i)
                length = length << 8 | uchar(m_bytes[at++]);
        }
        if (m_bytes.size() < at + length)
            return false;
        frames.append({m_bytes[begin] & 0x0f, m_bytes.mid(at, int(length))});
        begin = int(at + length);
        return true;
    }

    bool m_reads = true;
    bool m_isOpen = false;
    QByteArray m_bytes;
};
