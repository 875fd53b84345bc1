#include "gateway/Outbox.h"

#include <gtest/gtest.h>

using namespace sim;

namespace {

EventFrame push(const QByteArray &text)
{
    return {text, QString(), false};
}

EventFrame tick(const char *symbol, const QByteArray &text)
{
    return {text, QLatin1String(symbol), false};
}

EventFrame answerToSubscription(const QByteArray &text)
{
    return {text, QString(), true};
}

QList<QByteArray> takeAll(Outbox &outbox)
{
    QList<QByteArray> texts;
    while (!outbox.isEmpty())
        texts.append(outbox.take().text);
    return texts;
}

} // namespace

TEST(Outbox, KeepsTheOrderOfEvents)
{
    Outbox outbox;
    EXPECT_TRUE(outbox.isEmpty());
    for (const char *text : {"a", "b", "b", "a"})
        EXPECT_TRUE(outbox.add(push(text)));
    EXPECT_EQ((QList<QByteArray>{"a", "b", "b", "a"}), takeAll(outbox));
}

TEST(Outbox, ATickTakesThePlaceOfTheWaitingTickOfItsSymbol)
{
    Outbox outbox;
    for (const EventFrame &frame : {tick("A", "a1"), push("p"), tick("B", "b1"), tick("A", "a2"), push("q"),
                                    tick("A", "a3"), tick("C", "c1"), tick("B", "b2")})
        EXPECT_TRUE(outbox.add(frame));
    EXPECT_EQ((QList<QByteArray>{"a3", "p", "b2", "q", "c1"}), takeAll(outbox));
}

TEST(Outbox, ATickThatWasTakenWaitsNoMore)
{
    Outbox outbox;
    outbox.add(tick("A", "a1"));
    outbox.add(push("p"));
    EXPECT_EQ("a1", outbox.take().text);
    outbox.add(tick("A", "a2"));
    outbox.add(tick("A", "a3"));
    EXPECT_EQ((QList<QByteArray>{"p", "a3"}), takeAll(outbox));
}

TEST(Outbox, ATickDoesNotOvertakeTheAnswerToASubscription)
{
    Outbox outbox;
    for (const EventFrame &frame : {tick("A", "a1"), answerToSubscription("s"), tick("A", "a2"), tick("A", "a3")})
        EXPECT_TRUE(outbox.add(frame));
    EXPECT_EQ("a1", outbox.take().text); // the tick before the answer is not the one whose place newer ones take
    outbox.add(tick("A", "a4"));
    EXPECT_EQ((QList<QByteArray>{"s", "a4"}), takeAll(outbox));
}

TEST(Outbox, OnlyWhatWaitsAlreadyCountsForTheLimit)
{
    Outbox outbox;
    const QByteArray most(int(Outbox::kMaxBytes), 'x');
    EXPECT_TRUE(outbox.add(push(most + most))); // an event of any size
    EXPECT_FALSE(outbox.add(push("p")));
    EXPECT_FALSE(outbox.add(tick("A", "a1")));
    outbox.take();
    EXPECT_TRUE(outbox.add(push(most)));
    EXPECT_TRUE(outbox.add(tick("A", "a1"))); // over the limit with this one
    EXPECT_FALSE(outbox.add(push("p")));
    outbox.take();
    EXPECT_TRUE(outbox.add(push("p")));
    EXPECT_EQ((QList<QByteArray>{"a1", "p"}), takeAll(outbox));
}

TEST(Outbox, TicksThatOnlyReplaceOthersNeverReachTheLimit)
{
    Outbox outbox;
    const QByteArray large(1024 * 1024, 'x');
    for (int i = 0; i < 100; ++i)
        EXPECT_TRUE(outbox.add(tick("A", large)));
    EXPECT_TRUE(outbox.add(tick("A", "a")));
    EXPECT_TRUE(outbox.add(push(QByteArray(int(Outbox::kMaxBytes) - 1, 'x')))); // replaced bytes do not count
    EXPECT_TRUE(outbox.add(push("p")));
}
