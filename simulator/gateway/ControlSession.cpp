#include "gateway/ControlSession.h"

#include "gateway/ControlFrame.h"
#include "gateway/WebSocket.h"
#include "terminal/Terminal.h"

#include <boost/asio/steady_timer.hpp>

#include <deque>

namespace sim {

namespace {

/// Between two looks at the state.
constexpr std::chrono::milliseconds kPause(100);

/// After so many looks the state is sent even if only the time has changed.
constexpr int kLooksPerSecond = 10;

constexpr std::size_t kMaxFrame = 4096;

class ControlSession final : public Connection, public std::enable_shared_from_this<ControlSession> {
public:
    ControlSession(Socket &&socket, Connections &connections)
        : m_stream(std::move(socket)), m_pause(m_stream.get_executor()), m_connections(connections)
    {
        setUp(m_stream);
        m_stream.read_message_max(kMaxFrame);
    }

    void open(const Request &request)
    {
        m_connections.insert(shared_from_this());
        m_stream.async_accept(request, [self = shared_from_this()](Error error) {
            if (error)
                return self->end();
            self->m_isBusy = false;
            self->read();
            self->look();
        });
    }

    void stop() override
    {
        m_isStopping = true;
        m_pause.cancel();
        proceed();
    }

private:
    /// Reads one command. The next one is read when the peer has taken the result, so that a peer that does not read
    /// lets nothing grow here.
    void read()
    {
        m_stream.async_read(m_frame, [self = shared_from_this()](Error error, std::size_t) {
            if (error)
                return self->end();
            self->take(QByteArray(static_cast<const char *>(self->m_frame.data().data()), int(self->m_frame.size())));
            self->m_frame.clear();
        });
    }

    void take(const QByteArray &text)
    {
        const ControlFrame frame = ControlFrame::read(text);
        if (!frame.problem.isEmpty())
            return answer(frame.id, frame.problem);
        Terminal::instance().control().run(frame.command, [weak = weak_from_this(), executor = m_stream.get_executor(),
                                                           id = frame.id](const QString &reason) {
            net::post(executor, [weak, id, reason] {
                if (const std::shared_ptr<ControlSession> self = weak.lock())
                    self->answer(id, reason);
            });
        });
    }

    void answer(const QJsonValue &id, const QString &problem)
    {
        addState();
        m_isAnswered = true;
        send(resultFrame(id, problem));
    }

    void send(const QByteArray &text)
    {
        m_waiting.push_back(text);
        proceed();
    }

    void look()
    {
        if (m_hasEnded || m_isStopping)
            return;
        if (controlState(Terminal::instance()) != m_state || ++m_looks >= kLooksPerSecond)
            addState();
        m_pause.expires_after(kPause);
        m_pause.async_wait([self = shared_from_this()](Error error) {
            if (!error)
                self->look();
        });
    }

    /// A peer that does not read gets no more states meanwhile.
    void addState()
    {
        if (m_isBusy && !m_waiting.empty())
            return;
        m_state = controlState(Terminal::instance());
        m_looks = 0;
        send(stateFrame(m_state, Terminal::instance()));
    }

    void proceed()
    {
        if (m_isBusy || m_hasEnded)
            return;
        if (m_isStopping)
            return close();
        if (m_waiting.empty())
            return;
        m_isBusy = true;
        m_text = std::move(m_waiting.front());
        m_waiting.pop_front();
        m_stream.async_write(net::const_buffer(m_text.constData(), std::size_t(m_text.size())),
                             [self = shared_from_this()](Error error, std::size_t) {
                                 self->m_isBusy = false;
                                 if (error)
                                     return self->end();
                                 if (self->m_waiting.empty() && std::exchange(self->m_isAnswered, false))
                                     self->read();
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
    beast::flat_buffer m_frame;
    std::deque<QByteArray> m_waiting;
    QByteArray m_text;         ///< the frame that is being written
    QJsonObject m_state;       ///< that was sent last
    int m_looks = 0;           ///< since then
    bool m_isAnswered = false; ///< the last command, whose result may still wait
    bool m_isBusy = true;      ///< opening, writing or closing
    bool m_isStopping = false;
    bool m_hasEnded = false;
};

} // namespace

void openControl(Socket &&socket, const Request &request, Connections &connections)
{
    std::make_shared<ControlSession>(std::move(socket), connections)->open(request);
}

} // namespace sim
