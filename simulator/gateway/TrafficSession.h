#pragma once

#include "gateway/Asio.h"
#include "gateway/Connection.h"

namespace sim {

/// Answers the request for a WebSocket, and sends what passes in this process from then on, first what the log keeps.
/// What the peer sends is dropped. A peer that reads slowly loses entries and is told how many. Input and output thread
/// only.
void openTraffic(Socket &&socket, const Request &request, Connections &connections);

} // namespace sim
