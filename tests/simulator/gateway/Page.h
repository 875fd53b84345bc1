#pragma once

#include "Await.h"
#include "gateway/Gateway.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QWebSocket>

#include <gtest/gtest.h>

/// A WebSocket client that calls like a page and records the frames that it receives.
class Page {
public:
    Page(int port, const QString &origin) : socket(origin)
    {
        QObject::connect(&socket, &QWebSocket::textMessageReceived, [this](const QString &frame) {
            frames.append(QJsonDocument::fromJson(frame.toUtf8()).object());
        });
        socket.open(QUrl(QStringLiteral("ws://127.0.0.1:%1/view").arg(port)));
    }

    explicit Page(int port) : Page(port, QStringLiteral("http://127.0.0.1:%1").arg(port)) {}

    Page(const sim::Gateway &gateway, const QString &origin) : Page(gateway.port(), origin) {}

    explicit Page(const sim::Gateway &gateway) : Page(gateway.port()) {}

    bool awaitOpen()
    {
        return await([&] { return socket.state() == QAbstractSocket::ConnectedState; });
    }
    bool awaitClosed()
    {
        return await([&] { return socket.state() == QAbstractSocket::UnconnectedState; });
    }
    bool awaitFrames(int n)
    {
        return await([&] { return frames.size() >= n; });
    }

    void invoke(const char *method, const QJsonArray &args)
    {
        const QJsonObject frame{{QStringLiteral("invoke"), QLatin1String(method)}, {QStringLiteral("args"), args}};
        socket.sendTextMessage(QString::fromUtf8(QJsonDocument(frame).toJson()));
    }

    QString event(int i) const { return frames[i].value(QStringLiteral("event")).toString(); }
    QJsonArray args(int i) const { return frames[i].value(QStringLiteral("args")).toArray(); }
    QString uuid(int i) const
    {
        const QByteArray reply = args(i).at(0).toString().toUtf8();
        return QJsonDocument::fromJson(reply).object().value(QStringLiteral("uuid")).toString();
    }

    /// The arguments of all events of that name, in order.
    QVector<QJsonArray> heard(const char *name) const
    {
        QVector<QJsonArray> all;
        for (int i = 0; i < frames.size(); ++i) {
            if (event(i) == QLatin1String(name))
                all.append(args(i));
        }
        return all;
    }

    /// The JSON object in the nth event of that name, counted from 0; waits for it.
    QJsonObject awaitObject(const char *name, int n = 0)
    {
        EXPECT_TRUE(await([&] { return heard(name).size() > n; })) << name;
        const QByteArray text = heard(name).value(n).at(0).toString().toUtf8();
        return QJsonDocument::fromJson(text).object();
    }

    QWebSocket socket;
    QVector<QJsonObject> frames;
};
