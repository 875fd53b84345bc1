#pragma once

#include "gateway/Beast.h"
#include "gateway/GatewayServer.h"
#include "gateway/HttpFiles.h"

#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/span_body.hpp>

namespace sim {

class Origins;

using RequestParser = http::request_parser<http::empty_body>;
using Response = http::response<http::span_body<const char>>;

/// What happens next at a connection. A plain value.
struct HttpStep {
    enum Kind { End, Answer, OpenPage, OpenTraffic, OpenControl };

    Kind kind;
    HttpReply reply = {}; ///< the answer
};

/// How the server answers the one request of a connection. It knows nothing of sockets. Constant after construction,
/// apart from the origins, of which it keeps a reference.
class HttpAnswers {
public:
    static constexpr std::size_t kMaxHead = GatewayServer::kMaxHead;

    HttpAnswers(const HttpFiles &files, const Origins &origins) : m_files(files), m_origins(origins) {}

    /// For a parser that has read nothing yet.
    static void setLimits(RequestParser &parser);

    /// What follows from the head of the request. error: with which reading it ended. headSize: bytes read of it.
    /// hasMore: the client has sent more than the head.
    HttpStep next(const RequestParser &parser, Error error, std::size_t headSize, bool hasMore) const;

    /// Makes the response. body: keeps what the response only refers to.
    void write(const HttpReply &reply, Response &response, QByteArray &body) const;

private:
    HttpStep nextForWebSocket(const Request &request, HttpStep::Kind kind, bool hasMore) const;

    const HttpFiles &m_files;
    const Origins &m_origins;
};

} // namespace sim
