#pragma once

#include <QJsonObject>
#include <QObject>
#include <QVariantMap>
#include <QWebChannel>
#include <QWebChannelAbstractTransport>

#include <memory>
#include <vector>

/// What a terminal would publish over Qt's own bridge: the same answers, returned from invokable methods.
class ChannelHost : public QObject {
    Q_OBJECT
public:
    QVariantList list; ///< what records() returns

    Q_INVOKABLE QString token(const QString &uuid) const;
    Q_INVOKABLE QVariantList records(const QString &uuid) const;

signals:
    void tick(const QVariantMap &quote);
};

/// Turns each message into text, as every real transport does, and drops it.
class DroppingTransport : public QWebChannelAbstractTransport {
public:
    void sendMessage(const QJsonObject &message) override;
};

/// A host with as many connected pages, each listening to the tick.
class WebChannelPeer {
public:
    explicit WebChannelPeer(int pages);

    /// A page's call of a method, given by its signature, as the page's script would write it.
    QJsonObject invocation(const char *method, const QString &uuid) const;

    /// Takes in a message of the first page. The answer to a call has been made into text when it returns.
    void receive(const QJsonObject &message);

    ChannelHost host;

private:
    QWebChannel m_channel;
    std::vector<std::unique_ptr<DroppingTransport>> m_transports;
};
