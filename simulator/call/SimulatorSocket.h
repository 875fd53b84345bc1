#pragma once

#include <QJsonObject>
#include <QVariantList>

#include <chrono>
#include <memory>
#include <optional>

namespace sim {

/// A WebSocket to a running simulator, as a page has one. Blocks its thread while it waits.
class SimulatorSocket {
public:
    SimulatorSocket();

    ~SimulatorSocket();

    /// On failure returns why it cannot. path: "/view" to be a page, "/control" to give commands.
    QString connect(quint16 port, std::chrono::milliseconds timeout, const char *path = "/view");

    /// Sends a text.
    bool send(const QJsonObject &object);

    bool invoke(const QString &method, const QVariantList &args);

    /// The next text, of an event {"args":[…],"event":"…"}; nothing when none came in time or the connection has ended.
    std::optional<QJsonObject> next(std::optional<std::chrono::milliseconds> timeout);

    /// Closes the connection; waits a moment for the simulator to agree, so that it has read every call.
    void close();

    /// Whether the simulator has ended the connection.
    bool hasEnded() const;

private:
    class Private;
    const std::unique_ptr<Private> d;
};

} // namespace sim
