#include "Require.h"
#include "ServedFolders.h"

#include "gateway/HttpAnswers.h"
#include "gateway/Origins.h"

#include <QLoggingCategory>
#include <QRegularExpression>

#include <boost/beast/core/buffers_to_string.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http.hpp>

#include <cstdint>

using namespace sim;

namespace {

constexpr quint16 kPort = 8080;

/// A connection whose client has sent all it will ever send. The bytes come in pieces.
class Bytes {
public:
    Bytes(const QByteArray &in, int piece) : m_in(in), m_piece(piece) {}

    template <class Buffers>
    std::size_t read_some(const Buffers &buffers, Error &error)
    {
        if (m_read == m_in.size())
            error = boost::asio::error::eof;
        const auto left = std::size_t(std::min(m_piece, m_in.size() - m_read));
        const std::size_t size =
            boost::asio::buffer_copy(buffers, boost::asio::buffer(m_in.constData() + m_read, left));
        m_read += int(size);
        return size;
    }

    template <class Buffers>
    std::size_t write_some(const Buffers &buffers, Error &error)
    {
        error = {};
        const std::string text = beast::buffers_to_string(buffers);
        m_out.append(text.data(), int(text.size()));
        return text.size();
    }

    template <class Buffers>
    std::size_t read_some(const Buffers &buffers);
    template <class Buffers>
    std::size_t write_some(const Buffers &buffers);

    bool hasMore() const { return m_read < m_in.size(); }
    const QByteArray &out() const { return m_out; }

private:
    const QByteArray m_in;
    const int m_piece;
    int m_read = 0;
    QByteArray m_out;
};

/// What the server would do for these bytes.
struct Outcome {
    HttpStep step;
    QByteArray out;
    Request request; ///< as far as it was read
};

class Server {
public:
    Server(const QString &root, const QString &inspector) : m_files(root, inspector) { m_origins.addOwn(kPort); }

    Outcome outcomeOf(const QByteArray &in, int piece) const
    {
        Bytes stream(in, piece);
        beast::flat_buffer buffer{HttpAnswers::kMaxHead};
        RequestParser parser;
        HttpAnswers::setLimits(parser);
        Error error;
        const std::size_t headSize = http::read_header(stream, buffer, parser, error);
        Outcome outcome{m_answers.next(parser, error, headSize, buffer.size() > 0), {}, parser.get()};
        if (outcome.step.kind == HttpStep::Answer) {
            QByteArray body;
            Response response;
            m_answers.write(outcome.step.reply, response, body);
            http::response_serializer<Response::body_type> serializer(response);
            Error failed;
            if (parser.get().method() == http::verb::head)
                http::write_header(stream, serializer, failed);
            else
                http::write(stream, serializer, failed);
            outcome.out = stream.out();
        }
        return outcome;
    }

private:
    const HttpFiles m_files;
    Origins m_origins{{QStringLiteral("https://desk.example")}};
    const HttpAnswers m_answers{m_files, m_origins};
};

/// The values of a field, each as it came.
QByteArrayList valuesOf(const Request &request, const char *name)
{
    QByteArrayList values;
    for (const auto &field : request) {
        if (beast::iequals(field.name_string(), name))
            values += QByteArray(field.value().data(), int(field.value().size()));
    }
    return values;
}

bool isOneOf(const QByteArrayList &values, const QByteArrayList &allowed)
{
    return values.size() == 1 && allowed.contains(values.first());
}

/// It is for this server, and for a path.
void requireGoodRequest(const Request &request)
{
    static const QByteArrayList hosts{"127.0.0.1:8080", "localhost:8080", "desk.example"};
    QByteArrayList values = valuesOf(request, "Host");
    for (QByteArray &value : values)
        value = value.toLower();
    require(isOneOf(values, hosts), "a request for another host was let in");
    require(request.target().starts_with('/'), "a request for no path was let in");
}

/// It is that of a trusted page, for a path that has a WebSocket.
void requireGoodWebSocket(const Request &request, HttpStep::Kind kind)
{
    static const QByteArrayList origins{"http://127.0.0.1:8080", "http://localhost:8080", "https://desk.example"};
    requireGoodRequest(request);
    require(isOneOf(valuesOf(request, "Origin"), origins), "a WebSocket of a foreign page was opened");
    require(valuesOf(request, "Sec-WebSocket-Key").size() == 1, "a WebSocket without a key was opened");
    require(beast::iequals(request[http::field::upgrade], "websocket"), "a WebSocket was opened unasked");
    const QByteArray path = kind == HttpStep::OpenPage      ? "/view"
                            : kind == HttpStep::OpenTraffic ? "/traffic"
                                                            : "/control";
    const QByteArray target(request.target().data(), int(request.target().size()));
    require(target == path || target.startsWith(path + '?'), "another WebSocket was opened: " + target);
}

/// The body of an answer, when its head is a well-formed one with the fields of this server, each at most once.
QByteArray bodyOf(const QByteArray &out, bool isHead, int status)
{
    static const QByteArrayList known{"Content-Type",
                                      "Content-Length",
                                      "Cache-Control",
                                      "Content-Security-Policy",
                                      "Cross-Origin-Resource-Policy",
                                      "Referrer-Policy",
                                      "X-Content-Type-Options",
                                      "Connection",
                                      "Location",
                                      "Allow",
                                      "Upgrade"};
    const int end = out.indexOf("\r\n\r\n");
    require(end > 0, "an answer has no end of its head");
    const QByteArray head = out.left(end);
    QByteArrayList lines;
    for (int begin = 0; begin <= head.size();) {
        const int next = head.indexOf("\r\n", begin);
        lines += head.mid(begin, next < 0 ? -1 : next - begin);
        begin = next < 0 ? head.size() + 1 : next + 2;
    }
    require(lines.takeFirst().startsWith("HTTP/1.1 " + QByteArray::number(status) + ' '), "another status: " + head);
    QByteArrayList names;
    for (const QByteArray &line : qAsConst(lines)) {
        require(!line.contains('\r') && !line.contains('\n') && !line.contains('\0'), "an injected line: " + head);
        const QByteArray name = line.left(line.indexOf(": "));
        require(known.contains(name) && !names.contains(name), "a field of somebody else: " + line);
        names += name;
    }
    for (const QByteArray &name : known.mid(0, 8))
        require(names.contains(name), "an answer lacks " + name);
    const QByteArray body = out.mid(end + 4);
    require(isHead ? body.isEmpty() : lines.contains("Content-Length: " + QByteArray::number(body.size())),
            "an answer has another length than it says");
    return body;
}

void requireFile(const Outcome &outcome, int choice, const QByteArray &body)
{
    requireGoodRequest(outcome.request);
    if (outcome.request.method() == http::verb::head)
        return;
    require(outcome.request.method() == http::verb::get, "another method than GET and HEAD got a file");
    const bool isOfRoot = choice <= 1 && body.startsWith("root ");
    const bool isOfInspector = choice % 2 == 0 && body.startsWith("inspector ");
    const bool isBuiltIn = body.startsWith('<') || body.contains("CallBridge");
    require(isOfRoot || isOfInspector || isBuiltIn, "served: " + body.left(100));
}

/// A whole head, as far as can be seen without parsing it: the parser waits for more behind a first line that is too
/// short.
bool hasWholeHead(const QByteArray &in)
{
    static const QRegularExpression firstLine(QStringLiteral("^[A-Z]+ /[!-~]* HTTP/1\\.[01]\r\n"));
    return in.contains("\r\n\r\n") && QString::fromLatin1(in).contains(firstLine);
}

/// What must hold of an answer whatever the request was.
void check(const Outcome &outcome, int choice, const QByteArray &in)
{
    static const QList<int> statuses{200, 307, 400, 403, 404, 405, 421, 426, 431};
    if (outcome.step.kind == HttpStep::End) {
        require(!hasWholeHead(in), "a whole head was not answered");
        return;
    }
    if (outcome.step.kind != HttpStep::Answer)
        return requireGoodWebSocket(outcome.request, outcome.step.kind);
    const int status = outcome.step.reply.status;
    require(statuses.contains(status), "no status of this server: " + QByteArray::number(status));
    const QByteArray body = bodyOf(outcome.out, outcome.request.method() == http::verb::head, status);
    require(!outcome.out.contains(ServedFolders::kSecret), "a secret file was served");
    if (status == 200)
        return requireFile(outcome, choice, body);
    require(outcome.request.method() == http::verb::head || body.startsWith(QByteArray::number(status) + ' '),
            "an answer without a file has contents");
    if (status == 307 || status == 404 || status == 426 || status == 403)
        requireGoodRequest(outcome.request);
    constexpr int kMostFolded = 4096; // bytes of a value that goes on in a second line, for the parser
    require(status != 431 || in.size() > kMostFolded, "a short head is too long");
}

/// A byte that no request may have stands for a long text, so that short inputs reach the limits.
QByteArray longer(QByteArray in)
{
    return in.replace('\1', QByteArray(4000, 'x'));
}

} // namespace

/// Whatever bytes a client sends: requests, one behind the other, in pieces. The first byte says which folders there
/// are, and the second how long the pieces are.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    static const ServedFolders folders;
    static const QString root = folders.path("root");
    static const QString inspector = folders.path("inspector");
    static const Server served[] = {{root, inspector}, {root, QString()}, {QString(), inspector}, {{}, {}}};
    static const bool isQuiet = [] {
        QLoggingCategory::setFilterRules(QStringLiteral("*.warning=false"));
        return true;
    }();
    if (!isQuiet || size < 2)
        return 0;
    const int choice = bytes[0] % 4;
    const int piece = bytes[1] + 1;
    const QByteArray in = longer(QByteArray(reinterpret_cast<const char *>(bytes) + 2, int(size) - 2));
    const Outcome outcome = served[choice].outcomeOf(in, piece);
    check(outcome, choice, in);

    // Neither the pieces nor what follows the head change an answer, except that a WebSocket has nothing behind it.
    if (outcome.step.kind != HttpStep::Answer || !hasWholeHead(in) || in.size() > int(HttpAnswers::kMaxHead))
        return 0;
    const Outcome alone = served[choice].outcomeOf(in.left(in.indexOf("\r\n\r\n") + 4), in.size());
    check(alone, choice, in);
    const bool isEarly = outcome.step.reply.status == 400 && alone.step.kind != HttpStep::End;
    require(isEarly || alone.out == outcome.out, "the answer depends on what follows the request");
    return 0;
}
