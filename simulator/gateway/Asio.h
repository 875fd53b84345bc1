#pragma once

// For the sources that do input and output: these headers compile slowly.
#include <boost/asio/basic_socket_acceptor.hpp>
#include <boost/asio/basic_stream_socket.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http/empty_body.hpp>
#include <boost/beast/http/message.hpp>

namespace sim {

namespace net = boost::asio;
namespace beast = boost::beast;
namespace http = beast::http;

using Error = boost::system::error_code;
using Tcp = net::ip::tcp;
using Socket = net::basic_stream_socket<Tcp, net::io_context::executor_type>;
using Request = http::request<http::empty_body>;

} // namespace sim
