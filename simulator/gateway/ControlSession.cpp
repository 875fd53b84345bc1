#include "gateway/ControlSession.h"

#include "gateway/WebSocket.h"
#include "terminal/Terminal.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <boost/asio/steady_timer.hpp>

#include <deque>

namespace sim {

namespace {

/// Between two looks at the state.
constexpr std::chrono::milliseconds kPause(100);

/// After so many looks the state is sent even if only the time has changed.
constexpr int kLooksPerSecond = 10;

constexpr std::size_t kMaxFrame = 4096;

QByteArray textOf(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

const char *nameOf(FaultKind kind)
{
    switch (kind) {
    case FaultKind::Switch:
        return "switch";
    case FaultKind::Count:
        return "count";
    case FaultKind::Milliseconds:
        break;
    }
    return "milliseconds";
}

/// The state without the time.
QJsonObject stateOf(Terminal &terminal)
{
    QJsonArray faults;
    for (const FaultInfo &info : Faults::all()) {
        faults.append(QJsonObject{{QStringLiteral("name"), QLatin1String(info.name)},
                                  {QStringLiteral("kind"), QLatin1String(nameOf(info.kind))},
                                  {QStringLiteral("most"), info.most},
                                  {QStringLiteral("sentence"), QLatin1String(info.sentence)},
                                  {QStringLiteral("value"), terminal.faults().value(info.fault)}});
    }
    return {{QStringLiteral("kind"), QStringLiteral("state")},
            {QStringLiteral("isPaused"), terminal.isPaused()},
            {QStringLiteral("speed"), terminal.speed()},
            {QStringLiteral("faults"), faults}};
}

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
    void read()
    {
        m_stream.async_read(m_frame, [self = shared_from_this()](Error error, std::size_t) {
            if (error)
                return self->end();
            self->take(QByteArray(static_cast<const char *>(self->m_frame.data().data()), int(self->m_frame.size())));
            self->m_frame.clear();
            self->read();
        });
    }

    void take(const QByteArray &text)
    {
        const QJsonObject request = QJsonDocument::fromJson(text).object();
        const QJsonValue id = request.value(QStringLiteral("id"));
        const QJsonValue words = request.value(QStringLiteral("command"));
        Command command;
        const QString problem = words.isString() ? Command::parse(words.toString(), command)
                                                 : QStringLiteral("a command is a JSON object with a text \"command\"");
        if (!problem.isEmpty())
            return answer(id, problem);
        Terminal::instance().control().run(
            command, [weak = weak_from_this(), executor = m_stream.get_executor(), id](const QString &reason) {
                net::post(executor, [weak, id, reason] {
                    if (const std::shared_ptr<ControlSession> self = weak.lock())
                        self->answer(id, reason);
                });
            });
    }

    void answer(const QJsonValue &id, const QString &problem)
    {
        addState();
        send({{QStringLiteral("kind"), QStringLiteral("result")},
              {QStringLiteral("id"), id},
              {QStringLiteral("problem"), problem}});
    }

    void send(const QJsonObject &object)
    {
        m_waiting.push_back(textOf(object));
        proceed();
    }

    void look()
    {
        if (m_hasEnded || m_isStopping)
            return;
        if (stateOf(Terminal::instance()) != m_state || ++m_looks >= kLooksPerSecond)
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
        Terminal &terminal = Terminal::instance();
        m_state = stateOf(terminal);
        m_looks = 0;
        QJsonObject state = m_state;
        state.insert(QStringLiteral("time"), terminal.now().toMSecsSinceEpoch());
        send(state);
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
                                     self->end();
                                 else
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
    QByteArray m_text;    ///< the frame that is being written
    QJsonObject m_state;  ///< that was sent last
    int m_looks = 0;      ///< since then
    bool m_isBusy = true; ///< opening, writing or closing
    bool m_isStopping = false;
    bool m_hasEnded = false;
};

} // namespace

void openControl(Socket &&socket, const Request &request, Connections &connections)
{
    std::make_shared<ControlSession>(std::move(socket), connections)->open(request);
}

} // namespace sim
