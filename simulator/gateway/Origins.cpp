#include "gateway/Origins.h"

#include <algorithm>

namespace sim {

namespace {

constexpr quint16 kHttpPort = 80; // an origin does not contain this port

} // namespace

Origins::Origins(const QStringList &allowed)
{
    for (const QString &origin : allowed)
        add(origin.toUtf8());
}

void Origins::addOwn(quint16 port)
{
    const QByteArray suffix = port == kHttpPort ? QByteArray() : ':' + QByteArray::number(port);
    add("http://127.0.0.1" + suffix);
    add("http://localhost" + suffix);
}

QByteArray Origins::frameAncestors() const
{
    QList<QByteArray> origins = m_origins.values();
    std::sort(origins.begin(), origins.end());
    return "frame-ancestors " + origins.join(' ');
}

void Origins::add(const QByteArray &origin)
{
    m_origins.insert(origin);
    m_hosts.insert(origin.mid(origin.indexOf("://") + 3).toLower());
}

} // namespace sim
