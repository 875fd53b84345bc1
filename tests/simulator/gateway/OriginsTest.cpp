// What pages of other origins can reach of the server: as bytes, because browsers do not let their pages say all of
// this.
#include "Http.h"

#include <algorithm>

using namespace sim;

namespace {

const QByteArray kUpgrade = "Upgrade: websocket\r\nConnection: Upgrade\r\nSec-WebSocket-Version: 13\r\n"
                            "Sec-WebSocket-Key: AAAAAAAAAAAAAAAAAAAAAA==\r\n";

class OriginsTest : public testing::Test {
protected:
    OriginsTest() { EXPECT_TRUE(gateway.listen(0)); }

    QByteArray get(const QByteArray &path, const QByteArray &fields = {}) const
    {
        return exchange(gateway, "GET " + path + " HTTP/1.1\r\n" + fields + "\r\n");
    }

    int statusForHosts(const QByteArray &hostFields, const QByteArray &path = "/bridge.js") const
    {
        return status(answerTo(gateway, "GET " + path + " HTTP/1.1\r\n" + hostFields + "\r\n"));
    }

    QByteArray port() const { return QByteArray::number(gateway.port()); }
    QByteArray own() const { return "http://127.0.0.1:" + port(); }

    Gateway gateway{QString(),
                    {QStringLiteral("http://localhost:5173"), QStringLiteral("https://desk.example"),
                     QStringLiteral("app://desk")}};
};

} // namespace

TEST_F(OriginsTest, OnlyAllowedOriginsOpenAWebSocket)
{
    for (const char *path : {"/view", "/traffic"}) {
        EXPECT_EQ(426, status(get(path)));
        EXPECT_EQ(403, status(get(path, kUpgrade)));
        for (const QByteArray &origin :
             {QByteArray("http://evil.example"), QByteArray("null"), QByteArray(""), QByteArray("http://127.0.0.1"),
              own() + "0", own() + "/", "https" + own().mid(4), "http://127.0.0.1.evil.example:" + port(),
              QByteArray("http://desk.example"), QByteArray("https://desk.example.evil.example")})
            EXPECT_EQ(403, status(get(path, kUpgrade + "Origin: " + origin + "\r\n"))) << origin.toStdString();
        EXPECT_EQ(403, status(get(path, kUpgrade + "Origin: " + own() + "\r\nOrigin: http://evil.example\r\n")));
    }
    EXPECT_EQ(400, status(get("/view", "Upgrade: websocket\r\nConnection: Upgrade\r\nOrigin: " + own() + "\r\n")));
    // A client must wait until its request for a WebSocket is answered.
    EXPECT_EQ(400,
              status(exchange(gateway, "GET /view HTTP/1.1\r\n" + kUpgrade + "Origin: " + own() + "\r\n\r\n\x81\x80")));
}

TEST_F(OriginsTest, OnlyRequestsForItsOwnHostAndThoseOfAllowedOriginsAreAnswered)
{
    for (const QByteArray &host : {"127.0.0.1:" + port(), "localhost:" + port(), "LocalHost:" + port(),
                                   QByteArray("localhost:5173"), QByteArray("desk.example")})
        EXPECT_EQ(200, statusForHosts("Host: " + host + "\r\n")) << host.toStdString();
    for (const QByteArray &host :
         {"evil.example:" + port(), QByteArray("evil.example"), QByteArray("127.0.0.1"), QByteArray("localhost"),
          "127.0.0.1:" + port() + "0", "127.0.0.1.evil.example:" + port(), "localhost.:" + port(),
          "x@127.0.0.1:" + port(), QByteArray("localhost:5174"), QByteArray("desk.example:443"), QByteArray("")}) {
        for (const char *path : {"/", "/bridge.js", "/inspector/", "/view", "/traffic", "/nothing"})
            EXPECT_EQ(421, statusForHosts("Host: " + host + "\r\n", path)) << host.toStdString() << path;
        // The name may lead to this machine, so that its pages have the server for their origin.
        EXPECT_EQ(421,
                  statusForHosts("Host: " + host + "\r\n" + kUpgrade + "Origin: http://" + host + "\r\n", "/view"));
        EXPECT_EQ(421, statusForHosts("Host: " + host + "\r\n" + kUpgrade + "Origin: " + own() + "\r\n", "/view"));
    }
    EXPECT_EQ(400, statusForHosts({}));
    EXPECT_EQ(400, statusForHosts(hostField(gateway) + "Host: evil.example\r\n"));
    EXPECT_EQ(400, statusForHosts(hostField(gateway) + hostField(gateway)));
}

TEST_F(OriginsTest, EveryAnswerSaysWhatOtherPagesMayDoWithIt)
{
    QList<QByteArray> trusted{"app://desk", own(), "http://localhost:" + port(), "http://localhost:5173",
                              "https://desk.example"};
    std::sort(trusted.begin(), trusted.end());
    const QByteArray evil = "GET / HTTP/1.1\r\nHost: evil.example\r\n\r\n";
    for (const QByteArray &answer :
         {get("/"), get("/bridge.js"), get("/inspector/"), get("/inspector"), get("/nothing"), get("/view"),
          get("/view", kUpgrade), exchange(gateway, "POST / HTTP/1.1\r\n\r\n"), answerTo(gateway, evil)}) {
        SCOPED_TRACE(answer.left(200).toStdString());
        const QByteArray ancestors = field(answer, "Content-Security-Policy").split(';').first();
        EXPECT_EQ("frame-ancestors " + trusted.join(' '), ancestors);
        EXPECT_EQ("nosniff", field(answer, "X-Content-Type-Options"));
        EXPECT_EQ("same-origin", field(answer, "Referrer-Policy"));
        EXPECT_EQ("", field(answer, "Access-Control-Allow-Origin")); // no page of another origin reads an answer
    }
}

TEST_F(OriginsTest, OnlyTheBridgeIsAScriptForPagesOfOtherOrigins)
{
    EXPECT_EQ("cross-origin", field(get("/bridge.js"), "Cross-Origin-Resource-Policy"));
    for (const char *path : {"/", "/inspector/", "/nothing", "/bridge.js/"})
        EXPECT_EQ("same-origin", field(get(path), "Cross-Origin-Resource-Policy")) << path;
}

TEST_F(OriginsTest, TheInspectorLoadsNothingFromElsewhereAndNoOtherPageIsRestricted)
{
    EXPECT_TRUE(field(get("/inspector/"), "Content-Security-Policy").contains("; default-src 'self';"));
    EXPECT_FALSE(field(get("/"), "Content-Security-Policy").contains(';'));
}

TEST_F(OriginsTest, AFormOfAnotherSiteChangesNothing)
{
    // What a browser sends for it without asking the server first.
    for (const char *type : {"application/x-www-form-urlencoded", "multipart/form-data; boundary=b", "text/plain"}) {
        for (const char *path : {"/", "/bridge.js", "/view", "/traffic", "/inspector/"}) {
            const QByteArray form = QByteArray("POST ") + path +
                                    " HTTP/1.1\r\nOrigin: http://evil.example\r\nContent-Type: " + type +
                                    "\r\nContent-Length: 3\r\n\r\na=b";
            EXPECT_EQ(405, status(exchange(gateway, form))) << path;
        }
    }
    // What it asks first for other requests gets no leave.
    const QByteArray asked = exchange(gateway, "OPTIONS /view HTTP/1.1\r\nOrigin: http://evil.example\r\n"
                                               "Access-Control-Request-Method: POST\r\n\r\n");
    EXPECT_EQ(405, status(asked));
    EXPECT_FALSE(asked.contains("Access-Control"));
}
