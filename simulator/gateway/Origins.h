#pragma once

#include <QByteArray>
#include <QSet>
#include <QStringList>

namespace sim {

/// Whose pages the server trusts, and by which names it may be asked: its own origins and those that were allowed.
/// Constant once the server listens.
class Origins {
public:
    /// allowed: such as http://localhost:5173.
    explicit Origins(const QStringList &allowed);

    /// The port on which the server listens makes its own origins.
    void addOwn(quint16 port);

    /// Whether a page of that origin may open a WebSocket.
    bool mayConnect(const QByteArray &origin) const { return m_origins.contains(origin); }

    /// Whether a request may be for that host, as its field Host says. A page whose own name leads to this machine (DNS
    /// rebinding) has the server's address for its origin, but still its own name in that field. A proxy of an allowed
    /// origin may pass the name of that origin on.
    bool isHost(const QByteArray &host) const { return m_hosts.contains(host.toLower()); }

    /// The directive of Content-Security-Policy that says whose pages may show a file in a frame.
    QByteArray frameAncestors() const;

private:
    void add(const QByteArray &origin);

    QSet<QByteArray> m_origins;
    QSet<QByteArray> m_hosts;
};

} // namespace sim
