#pragma once

#include "Await.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QWebSocket>

#include <gtest/gtest.h>

/// A WebSocket client that gives commands.
class Controller {
public:
    Controller(int port, const QString &origin) : socket(origin)
    {
        QObject::connect(&socket, &QWebSocket::textMessageReceived, [this](const QString &frame) {
            const QJsonObject object = QJsonDocument::fromJson(frame.toUtf8()).object();
            if (object.value(QStringLiteral("kind")) == QLatin1String("state"))
                state = object;
            else
                results.append(object);
        });
        socket.open(QUrl(QStringLiteral("ws://127.0.0.1:%1/control").arg(port)));
    }

    explicit Controller(int port) : Controller(port, QStringLiteral("http://127.0.0.1:%1").arg(port))
    {
        EXPECT_TRUE(await([&] { return !state.isEmpty(); }));
    }

    /// Why the command was not carried out.
    QString run(const QString &command)
    {
        const int before = results.size();
        socket.sendTextMessage(QString::fromUtf8(
            QJsonDocument(QJsonObject{{QStringLiteral("command"), command}, {QStringLiteral("id"), before}}).toJson()));
        EXPECT_TRUE(await([&] { return results.size() > before; }));
        EXPECT_EQ(before, results.last().value(QStringLiteral("id")).toInt());
        return results.last().value(QStringLiteral("problem")).toString();
    }

    int value(const char *fault) const
    {
        const QJsonArray faults = state.value(QStringLiteral("faults")).toArray();
        for (const QJsonValue each : faults) {
            if (each[QLatin1String("name")] == QLatin1String(fault))
                return each[QLatin1String("value")].toInt();
        }
        ADD_FAILURE() << fault;
        return -1;
    }

    QWebSocket socket;
    QJsonObject state;
    QVector<QJsonObject> results;
};
