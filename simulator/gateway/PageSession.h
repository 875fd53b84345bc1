#pragma once

#include "gateway/Asio.h"
#include "gateway/Connection.h"
#include "gateway/EventFrame.h"
#include "gateway/GatewayServer.h"
#include "traffic/Entry.h"

#include <memory>
#include <mutex>
#include <variant>
#include <vector>

namespace sim {

class PageSession;

/// How a page is closed.
struct PageClose {
    int code;
    QString reason;
};

/// The connection of a page breaks.
struct PageBreak {};

/// An event for a page.
struct PageEvent {
    QCefEvent event;
    traffic::Entry delivery; ///< for the log, when it has been written; its time is that of the broadcast
};

using PageContent = std::variant<PageEvent, PageClose, PageBreak>;

/// What other threads have for the pages, in order, on its way to the input and output thread.
class PageQueue {
public:
    explicit PageQueue(net::io_context &context) : m_context(context) {}

    /// Any thread.
    void add(const std::weak_ptr<PageSession> &page, PageContent content);

private:
    void deliver();

    struct Item {
        std::weak_ptr<PageSession> page;
        PageContent content;
    };

    net::io_context &m_context;
    EventFrames m_frames; // input and output thread only

    // Guarded by m_mutex
    std::mutex m_mutex;
    std::vector<Item> m_items;
};

/// What all pages need.
struct PageSurroundings {
    Connections &connections;
    PageQueue &queue;
    const GatewayServer::Listener &listener;
};

/// Answers the request for a WebSocket, tells the listener that the page is there, and serves it from then on. Input
/// and output thread only.
void openPage(Socket &&socket, const Request &request, int number, const PageSurroundings &surroundings);

} // namespace sim
