#pragma once

#include <QtGlobal>

#include <memory>
#include <set>

namespace sim {

/// A connection of any kind. Input and output thread only.
class Connection {
public:
    Connection() = default;
    virtual ~Connection() = default;

    /// The server stops.
    virtual void stop() = 0;

    /// Breaks, if it is that of the page with this number; 0 means any page.
    virtual void dropIf(int page) { Q_UNUSED(page) }

private:
    Q_DISABLE_COPY_MOVE(Connection)
};

/// All connections. Each enters itself when it begins, and leaves when it ends.
using Connections = std::set<std::shared_ptr<Connection>>;

} // namespace sim
