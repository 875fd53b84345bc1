#pragma once

#include "gateway/PageSocket.h"

#include <QStringList>

#include <chrono>
#include <functional>
#include <memory>

namespace sim {

/// Serves files over HTTP, and a WebSocket to each page, on an input and output thread of its own. So neither a page
/// that reads slowly nor a long answer delays other threads. Made, started and destroyed by the Gateway on the
/// user-interface thread. It listens on the loopback address only. Its own origins and the allowed ones are trusted: it
/// accepts WebSockets only from their pages, because pages can place orders and see all traffic; it answers only
/// requests for their hosts; and only their pages may show its pages in frames.
class GatewayServer {
public:
    static constexpr int kMaxHead = 16 * 1024; ///< bytes of the head of a request

    struct Settings {
        QString root;                           ///< the folder of the static files, or empty
        QString inspector;                      ///< the folder of the inspector, or empty
        QStringList allowedOrigins;             ///< in addition to its own
        std::chrono::milliseconds httpDeadline; ///< for the head of a request, and again for the answer
        int pagesBefore;                        ///< the first page has the number after it
    };

    /// Hears what happens at the pages. Called on the server's thread.
    using Listener = std::function<void(PageNews)>;

    GatewayServer(const Settings &settings, Listener listener);

    /// Stops the server.
    ~GatewayServer();

    /// Begins to serve; port 0 means any free one. On failure returns why it cannot.
    QString listen(quint16 port);

    quint16 port() const;

    /// The number of a new page, whoever shows it: pages are numbered from 1 as they connect. Any thread.
    int newPageNumber();

    /// Breaks the connection of the page with that number, or of all pages for 0. Any thread.
    void dropPages(int number);

    /// Closes all connections. Waits for the pages to agree, at most one second. Nothing is heard of pages afterwards.
    void stop();

private:
    class Private;
    const std::unique_ptr<Private> d;
};

} // namespace sim
