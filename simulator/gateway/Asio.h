#pragma once

#include "gateway/Beast.h"

// For the sources that do input and output: these headers compile slowly.
#include <boost/asio/basic_socket_acceptor.hpp>
#include <boost/asio/basic_stream_socket.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/beast/core/flat_buffer.hpp>

namespace sim {

namespace net = boost::asio;

using Tcp = net::ip::tcp;
using Socket = net::basic_stream_socket<Tcp, net::io_context::executor_type>;

} // namespace sim
