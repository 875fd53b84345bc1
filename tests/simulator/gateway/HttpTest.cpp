#include "Http.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <memory>
#include <vector>

#ifdef Q_OS_UNIX
#    include <sys/socket.h>
#endif

using namespace sim;

namespace {

/// A root with files, and files outside it that must not be served.
struct Files {
    Files()
    {
        EXPECT_TRUE(folder.isValid());
        write("root/index.html", "<p>root</p>");
        write("root/app.js", "js");
        write("root/data.unknown", "?");
        write("root/with space.txt", "space");
        write("root/sub/index.html", "<p>sub</p>");
        write("inspector/index.html", "<p>inspector</p>");
        write("inspector/assets/page.js", "page");
        write("root/inspector/index.html", "<p>hidden</p>");
        write("rootless.txt", "secret"); // its path starts with the path of the root
        write("secret.txt", "secret");
        EXPECT_TRUE(QDir().mkpath(path("root/empty")));
        EXPECT_TRUE(QFile::link(path("secret.txt"), path("root/link.txt")));
        EXPECT_TRUE(QFile::link(folder.path(), path("root/up")));
        EXPECT_TRUE(QFile::link(path("root/app.js"), path("root/inside.js")));
    }

    void write(const char *name, const QByteArray &content)
    {
        EXPECT_TRUE(QDir().mkpath(QFileInfo(path(name)).path()));
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    QString path(const char *name) const { return folder.filePath(QLatin1String(name)); }

    QTemporaryDir folder;
};

class HttpTest : public testing::Test {
protected:
    HttpTest()
    {
        EXPECT_TRUE(served.listen(0));
        EXPECT_TRUE(bare.listen(0));
    }

    QByteArray get(const QByteArray &path, const Gateway *gateway = nullptr)
    {
        return exchange(gateway ? *gateway : served, "GET " + path + " HTTP/1.1\r\n\r\n");
    }

    const Files files;
    Gateway served{files.path("root"), {}, files.path("inspector")};
    Gateway bare{QString(), {}};
};

} // namespace

TEST_F(HttpTest, FilesBelowTheRootAreServedWithTheirTypes)
{
    const QByteArray page = get("/");
    EXPECT_EQ(200, status(page));
    EXPECT_EQ("<p>root</p>", body(page));
    EXPECT_TRUE(page.contains("\r\nContent-Type: text/html; charset=utf-8\r\n"));
    EXPECT_TRUE(page.contains("\r\nContent-Length: 11\r\n"));
    EXPECT_TRUE(page.contains("\r\nConnection: close\r\n"));
    EXPECT_EQ("<p>sub</p>", body(get("/sub/")));
    EXPECT_EQ("<p>sub</p>", body(get("/sub")));
    EXPECT_TRUE(get("/app.js").contains("\r\nContent-Type: text/javascript; charset=utf-8\r\n"));
    EXPECT_TRUE(get("/data.unknown").contains("\r\nContent-Type: application/octet-stream\r\n"));
    EXPECT_EQ("space", body(get("/with%20space.txt?query=/../x")));
    EXPECT_EQ("js", body(get("/inside.js"))); // a link inside the root
}

TEST_F(HttpTest, TheBridgeIsAlwaysServed)
{
    for (const Gateway *gateway : {&served, &bare}) {
        const QByteArray answer = get("/bridge.js", gateway);
        EXPECT_EQ(200, status(answer));
        EXPECT_TRUE(answer.contains("text/javascript"));
        EXPECT_TRUE(body(answer).contains("window.CallBridge ="));
    }
}

TEST_F(HttpTest, TheInspectorIsServedWhateverTheRootIs)
{
    EXPECT_EQ("<p>inspector</p>", body(get("/inspector/")));
    EXPECT_EQ("page", body(get("/inspector/assets/page.js")));
    EXPECT_EQ(404, status(get("/inspector/secret.txt")));
    EXPECT_EQ(404, status(get("/inspector/../secret.txt")));
    // The page names its files relative to the folder.
    const QByteArray moved = get("/inspector");
    EXPECT_EQ(307, status(moved));
    EXPECT_TRUE(moved.contains("\r\nLocation: /inspector/\r\n"));
}

TEST_F(HttpTest, WithoutAnInspectorOnePageSaysHowToGetIt)
{
    EXPECT_TRUE(body(get("/inspector/", &bare)).contains("--inspector DIR"));
    EXPECT_EQ(404, status(get("/inspector/assets/page.js", &bare)));
}

TEST_F(HttpTest, WithoutARootOnePageSaysThatThisIsASimulation)
{
    EXPECT_TRUE(body(get("/", &bare)).contains("This is a simulation."));
    EXPECT_EQ(404, status(get("/index.html", &bare)));
    EXPECT_EQ(404, status(get("/etc/passwd", &bare)));
}

TEST_F(HttpTest, NothingOutsideTheRootIsServed)
{
    for (const char *path :
         {"/../secret.txt", "/%2e%2e/secret.txt", "/..%2fsecret.txt", "/%2e%2e%2fsecret.txt", "/sub/../../secret.txt",
          "/..%5csecret.txt", "/..\\secret.txt", "/link.txt", "/up/secret.txt", "/up/root/../secret.txt",
          "/../rootless.txt", "//etc/passwd", "/%00/etc/passwd", "/app.js%00.html", "/../../../../../../etc/passwd"}) {
        const QByteArray answer = get(path);
        EXPECT_EQ(404, status(answer)) << path;
        EXPECT_FALSE(answer.contains("secret")) << path;
    }
}

TEST_F(HttpTest, AMissingFileIs404)
{
    EXPECT_EQ(404, status(get("/nothing")));
    EXPECT_EQ(404, status(get("/empty"))); // a folder without a page
    EXPECT_EQ(404, status(get("/app.js/")));
    EXPECT_EQ(404, status(get("/%ff%fe")));
}

TEST_F(HttpTest, HeadGivesTheSameFieldsWithoutABody)
{
    const QByteArray whole = get("/app.js");
    const QByteArray head = exchange(served, "HEAD /app.js HTTP/1.1\r\n\r\n");
    EXPECT_EQ("js", body(whole));
    EXPECT_EQ(whole.left(whole.size() - 2), head);
    EXPECT_EQ("", body(exchange(served, "HEAD /nothing HTTP/1.1\r\n\r\n")));
}

TEST_F(HttpTest, OtherMethodsAre405)
{
    for (const char *method : {"POST", "PUT", "DELETE", "OPTIONS", "get"}) {
        const QByteArray answer = exchange(served, QByteArray(method) + " / HTTP/1.1\r\nContent-Length: 0\r\n\r\n");
        EXPECT_EQ(405, status(answer)) << method;
        EXPECT_TRUE(answer.contains("\r\nAllow: GET, HEAD\r\n")) << method;
    }
    EXPECT_EQ(405, status(exchange(served, "POST /view HTTP/1.1\r\n\r\n")));
}

TEST_F(HttpTest, AnInvalidRequestIs400)
{
    EXPECT_EQ(400, status(exchange(served, "garbage\r\n\r\n")));
    EXPECT_EQ(400, status(exchange(served, QByteArray("\x16\x03\x01\x02\x00\x01\r\n\r\n", 10))));
    for (const QByteArray &bad :
         {QByteArray("\r\n\r\n"), QByteArray("GET /\r\n\r\n"), QByteArray("GET  / HTTP/1.1\r\n\r\n"),
          QByteArray("GET x HTTP/1.1\r\n\r\n"), QByteArray("GET / HTTP/2\r\n\r\n"),
          QByteArray("GET / HTTP/1.1 \r\n\r\n"), QByteArray("G@T / HTTP/1.1\r\n\r\n"),
          QByteArray("GET http://h/ HTTP/1.1\r\n\r\n"), QByteArray("GET / HTTP/1.1\r\nno colon\r\n\r\n"),
          QByteArray("GET / HTTP/1.1\r\nName : v\r\n\r\n"), QByteArray("GET / HTTP/1.1\r\n: v\r\n\r\n"),
          QByteArray("GET / HTTP/1.1\nA: b\r\n\r\n"), QByteArray("GET / HTTP/1.1\r\nA: b\rc: d\r\n\r\n"),
          QByteArray("GET / HTTP/1.1\r\nA: ") + '\0' + "\r\n\r\n",
          QByteArray("GET / HTTP/1.1\r\nContent-Length: many\r\n\r\n")})
        EXPECT_EQ(400, status(exchange(served, bad))) << bad.toStdString();
}

TEST_F(HttpTest, NoBodyIsRead)
{
    EXPECT_EQ(405, status(exchange(served, "POST / HTTP/1.1\r\nContent-Length: 18446744073709551615\r\n\r\nx")));
    EXPECT_EQ(405, status(exchange(served, "POST / HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\nno length\r\n")));
    EXPECT_EQ("js", body(exchange(served, "GET /app.js HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\nffffffffff\r\n")));
    EXPECT_EQ("js", body(exchange(served, "GET /app.js HTTP/1.1\r\n\r\n" + QByteArray(1000000, 'x'))));
}

TEST_F(HttpTest, OnlyTheFirstOfSeveralRequestsIsAnswered)
{
    const QByteArray request = "GET /app.js HTTP/1.1\r\n" + hostField(served) + "Connection: keep-alive\r\n\r\n";
    EXPECT_EQ("js", body(answerTo(served, request)));
    EXPECT_EQ(answerTo(served, request), answerTo(served, request + request + "garbage"));
}

TEST_F(HttpTest, AHeadThatIsTooLongIs431)
{
    const QByteArray endless = "GET / HTTP/1.1\r\nX: " + QByteArray(GatewayServer::kMaxHead, 'x');
    EXPECT_EQ(431, status(exchange(served, endless)));
    EXPECT_EQ(431, status(exchange(served, endless + QByteArray(10000000, 'x')))); // while the client still sends
    QByteArray manyFields = "GET / HTTP/1.1\r\n";
    while (manyFields.size() <= GatewayServer::kMaxHead)
        manyFields += "A: b\r\n";
    EXPECT_EQ(431, status(exchange(served, manyFields + "\r\n")));
    const QByteArray most = "GET /app.js HTTP/1.1\r\n" + hostField(served) + "X: ";
    const QByteArray rest = "\r\n\r\n";
    EXPECT_EQ("js", body(answerTo(served,
                                  most + QByteArray(GatewayServer::kMaxHead - most.size() - rest.size(), 'x') + rest)));
}

TEST_F(HttpTest, AnIncompleteHeadIs408AtTheDeadline)
{
    // The clients must take their answers within the same time.
    Gateway impatient(files.path("root"), {}, QString(), std::chrono::seconds(1));
    ASSERT_TRUE(impatient.listen(0));
    QTcpSocket half;
    QTcpSocket silent;
    for (QTcpSocket *const socket : {&half, &silent})
        socket->connectToHost(QHostAddress::LocalHost, impatient.port());
    half.write("GET / HTTP/1.1\r\nHost:");
    EXPECT_EQ(408, status(answerOf(half)));
    EXPECT_EQ(408, status(answerOf(silent)));
}

TEST_F(HttpTest, AHeadMayComeByteByByte)
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, served.port());
    socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    ASSERT_TRUE(await([&] { return socket.state() == QAbstractSocket::ConnectedState; }));
    for (const char byte : "GET /app.js HTTP/1.1\r\n" + hostField(served) + "\r\n") {
        socket.putChar(byte);
        ASSERT_TRUE(await([&] { return socket.bytesToWrite() == 0; }));
    }
    EXPECT_EQ("js", body(answerOf(socket)));
}

TEST_F(HttpTest, AClientThatDisconnectsDoesNotAffectOthers)
{
    for (const QByteArray &part :
         {QByteArray(), QByteArray("GET"), "GET / HTTP/1.1\r\n" + hostField(served) + "\r\n"}) {
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, served.port());
        ASSERT_TRUE(await([&] { return socket.state() == QAbstractSocket::ConnectedState; }));
        socket.write(part);
        socket.flush();
        socket.abort();
    }
    EXPECT_EQ(200, status(get("/")));
}

TEST_F(HttpTest, ManySilentClientsDoNotKeepOthersWaiting)
{
    constexpr int kClients = 100;
    std::vector<std::unique_ptr<QTcpSocket>> silent;
    for (int i = 0; i < kClients; ++i) {
        silent.push_back(std::make_unique<QTcpSocket>());
        silent.back()->connectToHost(QHostAddress::LocalHost, served.port());
        silent.back()->write(QByteArray("GET / HTTP/1.1\r\nHost").left(i % 20));
        ASSERT_TRUE(await([&] { return silent.back()->state() == QAbstractSocket::ConnectedState; }));
    }
    EXPECT_EQ("js", body(get("/app.js")));
}

#ifdef Q_OS_UNIX
TEST_F(HttpTest, AClientThatHasSentEverythingMayCloseItsHalfOfTheConnection)
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, served.port());
    socket.write("GET /app.js HTTP/1.1\r\n" + hostField(served) + "\r\n");
    ASSERT_TRUE(await([&] { return socket.state() == QAbstractSocket::ConnectedState && !socket.bytesToWrite(); }));
    ASSERT_EQ(0, shutdown(int(socket.socketDescriptor()), SHUT_WR));
    EXPECT_EQ("js", body(answerOf(socket)));

    QTcpSocket half;
    half.connectToHost(QHostAddress::LocalHost, served.port());
    half.write("GET /app.js");
    ASSERT_TRUE(await([&] { return half.state() == QAbstractSocket::ConnectedState && !half.bytesToWrite(); }));
    ASSERT_EQ(0, shutdown(int(half.socketDescriptor()), SHUT_WR));
    EXPECT_EQ("", answerOf(half));
}
#endif

TEST_F(HttpTest, ItListensOnTheLoopbackAddressOnly)
{
    Gateway gateway(QString(), {});
    ASSERT_TRUE(gateway.listen(0));
    Gateway second(QString(), {});
    EXPECT_FALSE(second.listen(gateway.port()));
    EXPECT_FALSE(second.errorString().isEmpty());
    QTcpSocket socket;
    socket.connectToHost(QHostAddress(QStringLiteral("127.0.0.2")),
                         gateway.port()); // would be answered if it listened on all addresses
    EXPECT_TRUE(await([&] { return socket.error() == QAbstractSocket::ConnectionRefusedError; }));
}
