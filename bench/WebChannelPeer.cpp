#include "WebChannelPeer.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QMetaMethod>

#include <benchmark/benchmark.h>

namespace {

// Of Qt's protocol, see qwebchannel.js.
constexpr int invokeMethod = 6;
constexpr int connectToSignal = 7;

const QString hostName = QStringLiteral("host");

} // namespace

QString ChannelHost::token(const QString &uuid) const
{
    Q_UNUSED(uuid)
    return QStringLiteral("b2a1c7e0-5d2f-4a8b-9c3e-1f6d8a7b4c21");
}

QVariantList ChannelHost::records(const QString &uuid) const
{
    Q_UNUSED(uuid)
    return list;
}

void DroppingTransport::sendMessage(const QJsonObject &message)
{
    const QByteArray text = QJsonDocument(message).toJson(QJsonDocument::Compact);
    benchmark::DoNotOptimize(text.constData());
}

WebChannelPeer::WebChannelPeer(int pages)
{
    m_channel.registerObject(hostName, &host);
    const int signal = QMetaMethod::fromSignal(&ChannelHost::tick).methodIndex();
    for (int i = 0; i < pages; ++i) {
        m_transports.push_back(std::make_unique<DroppingTransport>());
        DroppingTransport *const transport = m_transports.back().get();
        m_channel.connectTo(transport);
        emit transport->messageReceived({{QStringLiteral("type"), connectToSignal},
                                         {QStringLiteral("object"), hostName},
                                         {QStringLiteral("signal"), signal}},
                                        transport);
    }
}

QJsonObject WebChannelPeer::invocation(const char *method, const QString &uuid) const
{
    return {{QStringLiteral("type"), invokeMethod},
            {QStringLiteral("id"), 1},
            {QStringLiteral("object"), hostName},
            {QStringLiteral("method"), host.metaObject()->indexOfMethod(method)},
            {QStringLiteral("args"), QJsonArray{uuid}}};
}

void WebChannelPeer::receive(const QJsonObject &message)
{
    DroppingTransport *const transport = m_transports.front().get();
    emit transport->messageReceived(message, transport);
}
