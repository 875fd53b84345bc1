#include "gateway/GatewayServer.h"

#include "gateway/ControlSession.h"
#include "gateway/HttpAnswers.h"
#include "gateway/Origins.h"
#include "gateway/PageSession.h"
#include "gateway/TrafficSession.h"

#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/beast/http.hpp>

#include <atomic>
#include <future>
#include <thread>

namespace sim {

namespace {

using Acceptor = net::basic_socket_acceptor<Tcp, net::io_context::executor_type>;
using Clock = std::chrono::steady_clock;

/// For pages to agree to the end of their connections when the server stops.
constexpr std::chrono::seconds kStopDeadline(1);

/// Before the next connection is accepted when one could not be, for example because there are too many open files.
constexpr std::chrono::milliseconds kAcceptPause(100);

/// What the connections share. Input and output thread only, apart from the number.
struct Shared {
    Shared(const GatewayServer::Settings &settings, GatewayServer::Listener listener)
        : files(settings.root, settings.inspector)
        , httpDeadline(settings.httpDeadline)
        , listener(std::move(listener))
        , origins(settings.allowedOrigins)
        , lastPage(settings.pagesBefore)
    {
    }

    const HttpFiles files;
    const std::chrono::milliseconds httpDeadline;
    const GatewayServer::Listener listener;
    Origins origins;
    const HttpAnswers answers{files, origins};
    std::atomic<int> lastPage;
    Connections connections;
    net::io_context context{1};
    PageQueue queue{context};
    const PageSurroundings pages{connections, queue, listener};
};

/// A connection up to its first request: it answers a request for a file, and hands over the socket of a request for a
/// WebSocket.
class HttpSession final : public Connection, public std::enable_shared_from_this<HttpSession> {
public:
    HttpSession(Socket &&socket, Shared &shared) : m_socket(std::move(socket)), m_shared(shared)
    {
        HttpAnswers::setLimits(m_parser);
    }

    void start()
    {
        m_shared.connections.insert(shared_from_this());
        startDeadline();
        http::async_read_header(m_socket, m_buffer, m_parser,
                                [self = shared_from_this()](Error error, std::size_t size) {
                                    if (!self->m_isAnswering)
                                        self->proceed(error, size);
                                });
    }

    void stop() override { end(); }

private:
    void startDeadline()
    {
        m_deadline.expires_after(m_shared.httpDeadline);
        m_deadline.async_wait([self = shared_from_this()](Error error) {
            if (error || self->m_deadline.expiry() > Clock::now())
                return; // it was changed
            if (self->m_isAnswering)
                self->end();
            else
                self->answer({408});
        });
    }

    void proceed(Error error, std::size_t headSize)
    {
        const HttpStep step = m_shared.answers.next(m_parser, error, headSize, m_buffer.size() > 0);
        const Request &request = m_parser.get();
        switch (step.kind) {
        case HttpStep::Answer:
            return answer(step.reply);
        case HttpStep::OpenPage:
            openPage(std::move(m_socket), request, ++m_shared.lastPage, m_shared.pages);
            break;
        case HttpStep::OpenTraffic:
            openTraffic(std::move(m_socket), request, m_shared.connections);
            break;
        case HttpStep::OpenControl:
            openControl(std::move(m_socket), request, m_shared.connections);
            break;
        case HttpStep::End:
            break;
        }
        end();
    }

    void answer(const HttpReply &reply)
    {
        m_isAnswering = true;
        Error ignored;
        m_socket.cancel(ignored); // the reading of the head, if its time is up
        startDeadline();          // again, for a client that does not read the answer
        m_shared.answers.write(reply, m_response, m_body);
        const auto then = [self = shared_from_this()](Error error, std::size_t) {
            if (error)
                return self->end();
            // The client closes when it has everything. A connection that is closed while its peer sends is reset, and
            // the peer would lose the answer.
            self->m_socket.shutdown(Socket::shutdown_send, error);
            self->dropRest();
        };
        if (m_parser.get().method() == http::verb::head)
            http::async_write_header(m_socket, m_serializer, then);
        else
            http::async_write(m_socket, m_serializer, then);
    }

    void dropRest()
    {
        m_socket.async_read_some(net::buffer(m_dropped), [self = shared_from_this()](Error error, std::size_t) {
            if (error)
                self->end();
            else
                self->dropRest();
        });
    }

    void end()
    {
        Error ignored;
        m_socket.close(ignored);
        m_deadline.expires_at(Clock::time_point::max());
        m_shared.connections.erase(shared_from_this());
    }

    Socket m_socket;
    Shared &m_shared;
    net::steady_timer m_deadline{m_shared.context};
    beast::flat_buffer m_buffer{HttpAnswers::kMaxHead};
    RequestParser m_parser;
    bool m_isAnswering = false;
    QByteArray m_body;
    Response m_response;
    http::response_serializer<Response::body_type> m_serializer{m_response};
    std::array<char, 4096> m_dropped;
};

} // namespace

class GatewayServer::Private : public Shared {
public:
    using Shared::Shared;

    void accept()
    {
        acceptor.async_accept([this](Error error, Socket socket) {
            if (!acceptor.is_open())
                return;
            if (error) {
                pause.expires_after(kAcceptPause);
                pause.async_wait([this](Error stopped) {
                    if (!stopped)
                        accept();
                });
                return;
            }
            socket.set_option(Tcp::no_delay(true), error);
            std::make_shared<HttpSession>(std::move(socket), *this)->start();
            accept();
        });
    }

    void closeAll()
    {
        Error ignored;
        acceptor.close(ignored);
        pause.cancel();
        const Connections all = connections; // a connection that is stopped may end at once
        for (const auto &connection : all)
            connection->stop();
    }

    quint16 port = 0; ///< constant once the server listens
    Acceptor acceptor{context};
    net::steady_timer pause{context};
    net::executor_work_guard<net::io_context::executor_type> work{context.get_executor()};
    std::promise<void> allClosed;
    std::thread thread;
};

GatewayServer::GatewayServer(const Settings &settings, Listener listener)
    : d(std::make_unique<Private>(settings, std::move(listener)))
{
}

GatewayServer::~GatewayServer()
{
    stop();
}

QString GatewayServer::listen(quint16 port)
{
    const Tcp::endpoint address(net::ip::address_v4::loopback(), port);
    Error error;
    d->acceptor.open(address.protocol(), error);
#ifndef Q_OS_WIN // where it means that two programs may share the port
    if (!error)
        d->acceptor.set_option(Acceptor::reuse_address(true), error);
#endif
    if (!error)
        d->acceptor.bind(address, error);
    if (!error)
        d->acceptor.listen(Acceptor::max_listen_connections, error);
    if (error == net::error::address_in_use)
        return QStringLiteral("Address already in use"); // users meet this one: it reads the same on every system
    if (error)
        return QString::fromLocal8Bit(error.message().c_str());

    d->port = d->acceptor.local_endpoint(error).port();
    d->origins.addOwn(d->port);
    d->accept();
    d->thread = std::thread([this] {
        d->context.run();
        d->allClosed.set_value();
    });
    return QString();
}

quint16 GatewayServer::port() const
{
    return d->port;
}

int GatewayServer::newPageNumber()
{
    return ++d->lastPage;
}

void GatewayServer::dropPages(int number)
{
    net::post(d->context, [this, number] {
        const Connections all = d->connections; // a connection that is dropped leaves at once
        for (const auto &connection : all)
            connection->dropIf(number);
    });
}

void GatewayServer::stop()
{
    if (!d->thread.joinable())
        return;
    // The time for the pages counts from when they are told: before that the thread may be busy with a long answer.
    std::promise<void> told;
    net::post(d->context, [this, &told] {
        d->closeAll();
        d->work.reset();
        told.set_value();
    });
    told.get_future().wait();
    if (d->allClosed.get_future().wait_for(kStopDeadline) != std::future_status::ready)
        d->context.stop();
    d->thread.join();
    d->connections.clear(); // before the context that they use
}

} // namespace sim
