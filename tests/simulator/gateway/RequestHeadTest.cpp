#include "gateway/RequestHead.h"

#include <gtest/gtest.h>

using namespace sim;

TEST(RequestHead, AValidHeadIsRead)
{
    const auto head = RequestHead::parse("GET /a%20b?x=1 HTTP/1.1\r\nHost: h\r\nORIGIN:  http://o \r\nEmpty:\r\n\r\n");
    ASSERT_TRUE(head);
    EXPECT_EQ("GET", head->method);
    EXPECT_EQ("/a%20b", head->path());
    EXPECT_EQ(QList<QByteArray>{"http://o"}, head->values("origin"));
    EXPECT_EQ(QList<QByteArray>{""}, head->values("empty"));
    EXPECT_EQ(QList<QByteArray>{}, head->values("absent"));
}

TEST(RequestHead, AHeadWithoutFieldsIsRead)
{
    EXPECT_TRUE(RequestHead::parse("GET / HTTP/1.0\r\n\r\n"));
}

TEST(RequestHead, AFieldSentTwiceHasTwoValues)
{
    const auto head = RequestHead::parse("GET / HTTP/1.1\r\nOrigin: a\r\nOrigin: b\r\n\r\n");
    ASSERT_TRUE(head);
    EXPECT_EQ((QList<QByteArray>{"a", "b"}), head->values("origin"));
}

TEST(RequestHead, WordsAreFoundInListsInUpperAndLowerCase)
{
    const auto head = RequestHead::parse("GET / HTTP/1.1\r\nConnection: keep-alive, Upgrade\r\n\r\n");
    ASSERT_TRUE(head);
    EXPECT_TRUE(head->names("connection", "upgrade"));
    EXPECT_TRUE(head->names("connection", "keep-alive"));
    EXPECT_FALSE(head->names("connection", "keep"));
    EXPECT_FALSE(head->names("upgrade", "upgrade"));
}

TEST(RequestHead, AnInvalidHeadIsRefused)
{
    for (const QByteArray &bad : {
             QByteArray(""),
             QByteArray("\r\n\r\n"),
             QByteArray("garbage\r\n\r\n"),
             QByteArray("GET /\r\n\r\n"),
             QByteArray("GET  / HTTP/1.1\r\n\r\n"),
             QByteArray("GET x HTTP/1.1\r\n\r\n"),
             QByteArray("GET / HTTP/2\r\n\r\n"),
             QByteArray("GET / HTTP/1.1 \r\n\r\n"),
             QByteArray("G@T / HTTP/1.1\r\n\r\n"),
             QByteArray("GET http://h/ HTTP/1.1\r\n\r\n"),
             QByteArray("GET / HTTP/1.1\r\nno colon\r\n\r\n"),
             QByteArray("GET / HTTP/1.1\r\nName : v\r\n\r\n"),
             QByteArray("GET / HTTP/1.1\r\n: v\r\n\r\n"),
             QByteArray("GET / HTTP/1.1\r\nA: b\r\n folded\r\n\r\n"),
             QByteArray("GET / HTTP/1.1\nA: b\r\n\r\n"),
             QByteArray("GET / HTTP/1.1\r\nA: b\rc: d\r\n\r\n"),
             QByteArray("GET / HTTP/1.1\r\nA: ") + '\0' + "\r\n\r\n",
             QByteArray("GET / HTTP/1.1\r\nA: b\r\n"),
         })
        EXPECT_FALSE(RequestHead::parse(bad)) << bad.toStdString();
}
