#pragma once

#include "gateway/CallFrame.h"

#include "QCefEvent.h"
#include "traffic/Entry.h"

#include <memory>

namespace sim {

/// The connection of one page, as other threads see it: the WebSocket of a browser's page, or the web channel of a page
/// in the terminal's window.
/// Made when a page connects, and kept alive by whoever still uses it. What is sent after the end of the connection is
/// dropped. Any thread.
class PageSocket {
public:
    virtual ~PageSocket() = default;

    /// Pages are numbered from 1 as they connect, for the log.
    virtual int number() const = 0;

    /// Sends the event to the page, after those that were sent before. Never waits and never calls back.
    /// delivery: what to enter in the log of the traffic when the page has it.
    virtual void send(const QCefEvent &event, const traffic::Entry &delivery) = 0;

    /// Closes the connection when the page has received what was sent before.
    virtual void close(int code, const QString &reason) = 0;

    /// Breaks the connection, if there is one that can break: what was not sent before never comes.
    virtual void drop() {}

    /// To be told of each call that the page made: as long as many calls wait, no further ones are read.
    virtual void handled(const CallFrame &call) = 0;
};

/// Something that has happened at the WebSocket of a page: first Opened, then any number of calls, then Closed.
struct PageNews {
    enum What { Opened, Called, Closed };

    What what;
    std::shared_ptr<PageSocket> page;
    CallFrame call; ///< if it has called
};

} // namespace sim
