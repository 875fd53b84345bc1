#pragma once

#include "gateway/Asio.h"

#include <boost/beast/websocket.hpp>

#include <chrono>

namespace sim {

namespace websocket = beast::websocket;

/// For the sources that speak WebSocket, because this compiles slowly.
using WebSocket = websocket::stream<Socket>;

/// For a peer to agree to the end of its connection. What it sends meanwhile is read and dropped, because a connection
/// that is closed while its peer sends is reset, and the peer would lose the reason.
constexpr std::chrono::seconds kCloseDeadline(2);

constexpr int kGoingAway = 1001;

/// Each event is one message of one frame.
inline void setUp(WebSocket &stream)
{
    stream.set_option(websocket::stream_base::timeout{kCloseDeadline, websocket::stream_base::none(), false});
    stream.auto_fragment(false);
    stream.text(true);
}

} // namespace sim
