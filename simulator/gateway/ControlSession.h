#pragma once

#include "gateway/Asio.h"
#include "gateway/Connection.h"

namespace sim {

/// Answers the request for a WebSocket, and lets the peer control the simulator from then on. Each text that it sends
/// is a command, {"command":"speed 10","id":7}; the answer is {"id":7,"kind":"result","problem":""}, with a problem
/// when the command was not carried out. In between it gets the state, when that changes and once a second. Input and
/// output thread only.
void openControl(Socket &&socket, const Request &request, Connections &connections);

} // namespace sim
