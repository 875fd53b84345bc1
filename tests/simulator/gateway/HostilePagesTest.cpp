#include "Page.h"
#include "RawPage.h"
#include "TerminalTest.h"
#include "gateway/PageConnection.h"

using namespace sim;

namespace {

const QByteArray kCall = RawPage::call("Data_getToken_REQ", {QStringLiteral("u")});

/// Pages that break the rules, beside one that does not.
class HostilePagesTest : public QuietTerminalTest {
protected:
    HostilePagesTest()
    {
        EXPECT_TRUE(gateway.listen(0));
        bystander = std::make_unique<Page>(gateway);
        EXPECT_TRUE(bystander->awaitOpen());
    }

    int pages() const { return gateway.findChildren<PageConnection *>().size(); }

    void expectThatTheBystanderIsServed()
    {
        const int before = bystander->frames.size();
        bystander->invoke("Data_getToken_REQ", {QStringLiteral("mine")});
        ASSERT_TRUE(bystander->awaitFrames(before + 1));
        EXPECT_EQ(QStringLiteral("mine"), bystander->uuid(before));
        EXPECT_TRUE(await([&] { return pages() == 1; }));
    }

    /// The code with which a page is closed that sends these bytes.
    int closeCodeFor(const QByteArray &bytes)
    {
        RawPage page(gateway);
        EXPECT_TRUE(page.awaitOpen());
        page.socket.write(bytes);
        EXPECT_TRUE(page.awaitDisconnected());
        return page.closeCode();
    }

    Gateway gateway{QString(), {}};
    std::unique_ptr<Page> bystander;
};

} // namespace

TEST_F(HostilePagesTest, ACallMayComeInPiecesWithControlFramesBetweenThem)
{
    RawPage page(gateway);
    ASSERT_TRUE(page.awaitOpen());
    const int third = kCall.size() / 3;
    page.socket.write(RawPage::frame(RawPage::Text, kCall.left(third)));
    page.socket.write(RawPage::frame(RawPage::Ping | RawPage::kLast, "one"));
    page.socket.write(RawPage::frame(RawPage::Continuation, kCall.mid(third, third)));
    page.socket.write(RawPage::frame(RawPage::Pong | RawPage::kLast, "unasked"));
    page.socket.write(RawPage::frame(RawPage::Continuation, {}));
    page.socket.write(RawPage::frame(RawPage::Continuation | RawPage::kLast, kCall.mid(2 * third)));
    ASSERT_TRUE(page.awaitFrames(2));
    EXPECT_EQ(RawPage::Pong, page.frames[0].opcode);
    EXPECT_EQ("one", page.frames[0].payload);
    EXPECT_EQ(QStringLiteral("Data_getToken_RES"), page.event(1).value(QStringLiteral("event")).toString());
}

TEST_F(HostilePagesTest, ACharacterMayBeCutByTheEndOfAPiece)
{
    RawPage page(gateway);
    ASSERT_TRUE(page.awaitOpen());
    const QByteArray call = RawPage::call("Data_getToken_REQ", {QStringLiteral("东")});
    const int inCharacter = call.indexOf(QStringLiteral("东").toUtf8()) + 1;
    page.socket.write(RawPage::frame(RawPage::Text, call.left(inCharacter)));
    page.socket.write(RawPage::frame(RawPage::Continuation | RawPage::kLast, call.mid(inCharacter)));
    ASSERT_TRUE(page.awaitFrames(1));
    EXPECT_TRUE(page.frames[0].payload.contains(QStringLiteral("东").toUtf8()));
}

TEST_F(HostilePagesTest, FramesThatBreakTheProtocolCloseTheirPage)
{
    constexpr int kReserved = 0x40;
    const struct {
        const char *what;
        QByteArray bytes;
    } table[] = {
        {"not masked", RawPage::frame(RawPage::Text | RawPage::kLast, kCall, false)},
        {"a reserved bit", RawPage::frame(RawPage::Text | RawPage::kLast | kReserved, kCall)},
        {"a reserved opcode", RawPage::frame(3 | RawPage::kLast, kCall)},
        {"a reserved control opcode", RawPage::frame(11 | RawPage::kLast, {})},
        {"a continuation of nothing", RawPage::frame(RawPage::Continuation | RawPage::kLast, kCall)},
        {"a text within a text",
         RawPage::frame(RawPage::Text, "{") + RawPage::frame(RawPage::Text | RawPage::kLast, "}")},
        {"a ping in pieces", RawPage::frame(RawPage::Ping, "p")},
        {"a long ping", RawPage::frame(RawPage::Ping | RawPage::kLast, QByteArray(126, 'p'))},
        {"a reserved close code", RawPage::frame(RawPage::Close | RawPage::kLast, QByteArray("\x03\xed", 2))},
        {"a close frame of one byte", RawPage::frame(RawPage::Close | RawPage::kLast, "x")},
    };
    constexpr int kProtocolError = 1002;
    for (const auto &row : table)
        EXPECT_EQ(kProtocolError, closeCodeFor(row.bytes)) << row.what;
    expectThatTheBystanderIsServed();
}

TEST_F(HostilePagesTest, TextThatIsNotUtf8ClosesItsPage)
{
    constexpr int kWrongData = 1007;
    for (const char *bad : {"\"\xff\"", "\"\xc3\"", "\"\xed\xa0\x80\"", "\"\xc0\xaf\"", "\"\xf4\x90\x80\x80\""})
        EXPECT_EQ(kWrongData, closeCodeFor(RawPage::frame(RawPage::Text | RawPage::kLast, bad))) << bad;
    expectThatTheBystanderIsServed();
}

TEST_F(HostilePagesTest, AFrameThatIsTooLongClosesItsPageWhileItComes)
{
    constexpr int kTooLong = 1009;
    const QByteArray most(CallFrame::kMaxSize, ' ');
    EXPECT_EQ(kTooLong, closeCodeFor(RawPage::frame(RawPage::Text, most) +
                                     RawPage::frame(RawPage::Continuation | RawPage::kLast, " ")));
    // The first bytes of a frame that is announced as the longest one possible.
    QByteArray endless = RawPage::frame(RawPage::Text | RawPage::kLast, most + "  ");
    for (int i = 2; i < 10; ++i)
        endless[i] = i == 2 ? '\x7f' : '\xff';
    RawPage page(gateway);
    ASSERT_TRUE(page.awaitOpen());
    page.socket.write(endless);
    ASSERT_TRUE(page.awaitFrames(1));
    EXPECT_EQ(kTooLong, page.closeCode());
    EXPECT_EQ("Maximum framesize exceeded.", page.frames[0].payload.mid(2));
    expectThatTheBystanderIsServed();
    EXPECT_TRUE(page.awaitDisconnected()); // although it has not agreed
}

TEST_F(HostilePagesTest, CallsBeforeABadFrameAreAnsweredAndNoneBehindIt)
{
    RawPage page(gateway);
    ASSERT_TRUE(page.awaitOpen());
    const QByteArray call = RawPage::frame(RawPage::Text | RawPage::kLast, kCall);
    page.socket.write(call + call + RawPage::frame(RawPage::Text | RawPage::kLast, "no call") + call);
    ASSERT_TRUE(page.awaitDisconnected());
    ASSERT_EQ(3, page.frames.size());
    constexpr int kWrongData = 1007;
    EXPECT_EQ(kWrongData, page.closeCode());
    EXPECT_EQ("bad frame: not JSON", page.frames[2].payload.mid(2));
    expectThatTheBystanderIsServed();
}

TEST_F(HostilePagesTest, PagesThatVanishAreForgotten)
{
    const QByteArray call = RawPage::frame(RawPage::Text | RawPage::kLast, kCall);
    for (const QByteArray &last :
         {QByteArray(), call.left(1), call.left(call.size() / 2), call, call + call.left(3),
          RawPage::frame(RawPage::Text, "{"), RawPage::frame(RawPage::Ping | RawPage::kLast, "p")}) {
        RawPage page(gateway);
        ASSERT_TRUE(page.awaitOpen());
        page.socket.write(last);
        ASSERT_TRUE(await([&] { return page.socket.bytesToWrite() == 0; }));
        page.socket.abort(); // without a closing handshake
    }
    expectThatTheBystanderIsServed();
}

TEST_F(HostilePagesTest, AClosingHandshakeIsAnswered)
{
    const QByteArray reason = QByteArray("\x03\xe8", 2) + "bye";
    RawPage page(gateway);
    ASSERT_TRUE(page.awaitOpen());
    page.socket.write(RawPage::frame(RawPage::Close | RawPage::kLast, reason));
    ASSERT_TRUE(page.awaitDisconnected());
    constexpr int kNormal = 1000;
    EXPECT_EQ(kNormal, page.closeCode());
    expectThatTheBystanderIsServed();
}
