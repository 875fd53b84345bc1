#include "call/SimulatorSocket.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <boost/asio/basic_stream_socket.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/websocket.hpp>

namespace sim {

namespace {

namespace net = boost::asio;
namespace beast = boost::beast;
namespace http = beast::http;
namespace websocket = beast::websocket;

using Error = boost::system::error_code;
using Tcp = net::ip::tcp;
using Socket = net::basic_stream_socket<Tcp, net::io_context::executor_type>;
using Milliseconds = std::chrono::milliseconds;

constexpr Milliseconds kClosePatience(2000);

} // namespace

class SimulatorSocket::Private {
public:
    /// Runs what was begun until it has ended; gives up after the timeout. False when it was given up.
    bool run(std::optional<Milliseconds> timeout)
    {
        context.restart();
        if (timeout)
            context.run_for(*timeout);
        else
            context.run();
        if (context.stopped())
            return true;
        Error ignored;
        beast::get_lowest_layer(stream).close(ignored); // ends what still waits
        context.run();
        return false;
    }

    net::io_context context{1};
    websocket::stream<Socket> stream{context};
    beast::flat_buffer frame;
    Error error;
};

SimulatorSocket::SimulatorSocket() : d(std::make_unique<Private>())
{
    d->stream.read_message_max(0); // an answer of any size
}

SimulatorSocket::~SimulatorSocket() = default;

void SimulatorSocket::close()
{
    if (!d->stream.is_open())
        return;
    d->stream.async_close(websocket::close_code::normal, [](Error) {});
    d->run(kClosePatience);
}

QString SimulatorSocket::connect(quint16 port, Milliseconds timeout, const char *path)
{
    const std::string host = "127.0.0.1:" + std::to_string(port);
    d->stream.set_option(
        websocket::stream_base::decorator([origin = "http://" + host](websocket::request_type &request) {
            request.set(http::field::origin, origin); // the simulator accepts no page of another origin
        }));
    d->error = net::error::timed_out; // unless something else happens
    const auto then = [this](Error error) { d->error = error; };
    d->stream.next_layer().async_connect(Tcp::endpoint(net::ip::address_v4::loopback(), port),
                                         [this, host, path, then](Error error) {
                                             if (error)
                                                 return then(error);
                                             Error ignored;
                                             d->stream.next_layer().set_option(Tcp::no_delay(true), ignored);
                                             d->stream.async_handshake(host, path, then);
                                         });
    if (!d->run(timeout))
        d->error = net::error::timed_out;
    return d->error ? QString::fromLocal8Bit(d->error.message().c_str()) : QString();
}

bool SimulatorSocket::invoke(const QString &method, const QVariantList &args)
{
    const QJsonObject call{{QStringLiteral("invoke"), method},
                           {QStringLiteral("args"), QJsonArray::fromVariantList(args)}};
    return send(call);
}

bool SimulatorSocket::send(const QJsonObject &object)
{
    const QByteArray text = QJsonDocument(object).toJson(QJsonDocument::Compact);
    d->stream.write(net::const_buffer(text.constData(), std::size_t(text.size())), d->error);
    return !d->error;
}

std::optional<QJsonObject> SimulatorSocket::next(std::optional<Milliseconds> timeout)
{
    d->frame.clear();
    d->stream.async_read(d->frame, [this](Error error, std::size_t) { d->error = error; });
    if (!d->run(timeout)) {
        d->error = {};
        return std::nullopt;
    }
    if (d->error)
        return std::nullopt;
    const auto text = QByteArray::fromRawData(static_cast<const char *>(d->frame.data().data()), int(d->frame.size()));
    return QJsonDocument::fromJson(text).object();
}

bool SimulatorSocket::hasEnded() const
{
    return bool(d->error);
}

} // namespace sim
