#include "gateway/TrafficSession.h"

#include "gateway/TrafficFrame.h"
#include "gateway/WebSocket.h"
#include "traffic/Log.h"

#include <boost/asio/steady_timer.hpp>

#include <array>

namespace sim {

namespace {

/// Between two frames, as long as few entries come.
constexpr std::chrono::milliseconds kPause(200);

/// Entries of a frame. Making it holds the thread that also serves the pages.
constexpr int kBatch = 200;

class TrafficSession final : public Connection, public std::enable_shared_from_this<TrafficSession> {
public:
    TrafficSession(Socket &&socket, Connections &connections)
        : m_stream(std::move(socket)), m_pause(m_stream.get_executor()), m_connections(connections)
    {
        setUp(m_stream);
    }

    void open(const Request &request)
    {
        m_connections.insert(shared_from_this());
        m_stream.async_accept(request, [self = shared_from_this()](Error error) {
            if (error)
                return self->end();
            self->m_isBusy = false;
            self->m_last = traffic::log().oldest() - 1;
            self->dropInput();
            self->proceed();
        });
    }

    void stop() override
    {
        m_isStopping = true;
        m_pause.cancel();
        proceed();
    }

private:
    /// Reading is how the end of the connection is noticed.
    void dropInput()
    {
        m_stream.async_read_some(net::buffer(m_dropped), [self = shared_from_this()](Error error, std::size_t) {
            if (error)
                self->end();
            else
                self->dropInput();
        });
    }

    void proceed()
    {
        if (m_isBusy || m_hasEnded)
            return;
        if (m_isStopping)
            return close();
        const std::vector<traffic::Entry> entries = traffic::log().after(m_last, kBatch);
        if (entries.empty())
            return pause();
        m_text = trafficFrame(entries.front().number - m_last - 1, entries);
        m_last = entries.back().number;
        m_isBusy = true;
        const net::const_buffer text(m_text.constData(), std::size_t(m_text.size()));
        const bool isFull = entries.size() == kBatch;
        m_stream.async_write(text, [self = shared_from_this(), isFull](Error error, std::size_t) {
            self->m_isBusy = false;
            self->m_text.clear();
            if (error)
                self->end();
            else if (isFull || self->m_isStopping)
                self->proceed();
            else
                self->pause();
        });
    }

    void pause()
    {
        m_pause.expires_after(kPause);
        m_pause.async_wait([self = shared_from_this()](Error error) {
            if (!error)
                self->proceed();
        });
    }

    void close()
    {
        m_isBusy = true;
        m_stream.async_close(websocket::close_code(kGoingAway), [self = shared_from_this()](Error) { self->end(); });
    }

    void end()
    {
        if (m_hasEnded)
            return;
        m_hasEnded = true;
        m_pause.cancel();
        Error ignored;
        beast::get_lowest_layer(m_stream).close(ignored);
        m_connections.erase(shared_from_this());
    }

    WebSocket m_stream;
    net::steady_timer m_pause;
    Connections &m_connections;
    std::array<char, 1024> m_dropped;
    quint64 m_last = 0;   ///< the number of the latest entry that was sent
    QByteArray m_text;    ///< the frame that is being written
    bool m_isBusy = true; ///< opening, writing or closing
    bool m_isStopping = false;
    bool m_hasEnded = false;
};

} // namespace

void openTraffic(Socket &&socket, const Request &request, Connections &connections)
{
    std::make_shared<TrafficSession>(std::move(socket), connections)->open(request);
}

} // namespace sim
