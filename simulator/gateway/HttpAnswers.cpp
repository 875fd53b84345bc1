#include "gateway/HttpAnswers.h"

#include "gateway/Logging.h"
#include "gateway/Origins.h"

#include <boost/beast/websocket/rfc6455.hpp>

#include <limits>

namespace sim {

namespace {

using Field = http::field;

const struct {
    const char *path;
    HttpStep::Kind kind;
} kWebSockets[] = {
    {"/view", HttpStep::OpenPage},
    {"/traffic", HttpStep::OpenTraffic},
    {"/control", HttpStep::OpenControl},
};

QByteArray bytesOf(beast::string_view text)
{
    return QByteArray(text.data(), int(text.size()));
}

beast::string_view view(const QByteArray &text)
{
    return {text.constData(), std::size_t(text.size())};
}

QByteArray pathOf(const Request &request)
{
    const beast::string_view target = request.target();
    return bytesOf(target.substr(0, target.find('?')));
}

HttpStep answer(const HttpReply &reply)
{
    return {HttpStep::Answer, reply};
}

/// A field of a request that was refused, for the log.
QByteArray shown(const Request &request, Field field)
{
    constexpr int kMost = 200;
    return bytesOf(request[field]).left(kMost);
}

/// Says to browsers what other pages may do with the answer.
void protect(const HttpReply &reply, const Origins &origins, Response &response)
{
    QByteArray policy = origins.frameAncestors();
    if (!reply.policy.isEmpty())
        policy += "; " + reply.policy;
    response.set("Content-Security-Policy", view(policy));
    response.set("Cross-Origin-Resource-Policy", reply.isForAnyOrigin ? "cross-origin" : "same-origin");
    response.set("Referrer-Policy", "same-origin");
    response.set("X-Content-Type-Options", "nosniff");
}

} // namespace

void HttpAnswers::setLimits(RequestParser &parser)
{
    parser.header_limit(kMaxHead);
    parser.body_limit(std::numeric_limits<std::uint64_t>::max()); // no body is ever read
}

HttpStep HttpAnswers::next(const RequestParser &parser, Error error, std::size_t headSize, bool hasMore) const
{
    const Request &request = parser.get();
    const bool hasEnded = error == http::error::end_of_stream || error == http::error::partial_message;
    const bool isMalformed = !hasEnded && error.category() == http::make_error_code(http::error::bad_target).category();
    // The parser's own limit holds for what it has not parsed yet, so that a head of twice the length can pass it.
    if (error == http::error::header_limit || error == http::error::buffer_overflow || headSize > kMaxHead)
        return answer({431});
    if (error && !isMalformed)
        return {HttpStep::End}; // the client has closed the connection, or it broke
    if (isMalformed || !request.target().starts_with('/') || request.count(Field::host) != 1)
        return answer({400});
    if (!m_origins.isHost(bytesOf(request[Field::host]))) {
        qCWarning(gatewayLog, "A request for the host \"%s\" was refused; --allow-origin with its origin lets it in",
                  shown(request, Field::host).constData());
        return answer({421});
    }
    const QByteArray path = pathOf(request);
    for (const auto &webSocket : kWebSockets) {
        if (path != webSocket.path)
            continue;
        return nextForWebSocket(request, webSocket.kind, hasMore);
    }
    return answer(m_files.answer(bytesOf(request.method_string()), path));
}

HttpStep HttpAnswers::nextForWebSocket(const Request &request, HttpStep::Kind kind, bool hasMore) const
{
    if (request.method() != http::verb::get)
        return answer({405, {}, {}, "GET"});
    if (!beast::websocket::is_upgrade(request))
        return answer({426});
    if (request.count(Field::sec_websocket_key) != 1 || hasMore)
        return answer({400}); // also for a client that does not wait for its handshake to be answered
    if (request.count(Field::origin) != 1 || !m_origins.mayConnect(bytesOf(request[Field::origin]))) {
        qCWarning(gatewayLog, "A WebSocket of origin \"%s\" was refused; --allow-origin lets it in",
                  shown(request, Field::origin).constData());
        return answer({403});
    }
    return {kind};
}

void HttpAnswers::write(const HttpReply &reply, Response &response, QByteArray &body) const
{
    response.result(unsigned(reply.status));
    const bool isFile = response.result() == http::status::ok;
    body = isFile ? reply.body
                  : QByteArray::number(reply.status) + ' ' + bytesOf(http::obsolete_reason(response.result())) + '\n';
    response.set(Field::content_type, isFile ? view(reply.contentType) : "text/plain; charset=utf-8");
    response.content_length(std::size_t(body.size()));
    // No caching: developers reload pages that they have just built.
    response.set(Field::cache_control, "no-store");
    protect(reply, m_origins, response);
    response.set(Field::connection, "close");
    if (!reply.location.isEmpty())
        response.set(Field::location, view(reply.location));
    if (!reply.allow.isEmpty())
        response.set(Field::allow, view(reply.allow));
    if (reply.status == 426)
        response.set(Field::upgrade, "websocket");
    response.body() = {body.constData(), std::size_t(body.size())};
}

} // namespace sim
