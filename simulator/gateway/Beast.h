#pragma once

// HTTP messages without sockets.
#include <boost/beast/core/error.hpp>
#include <boost/beast/http/empty_body.hpp>
#include <boost/beast/http/message.hpp>

namespace sim {

namespace beast = boost::beast;
namespace http = beast::http;

using Error = boost::system::error_code;
using Request = http::request<http::empty_body>;

} // namespace sim
