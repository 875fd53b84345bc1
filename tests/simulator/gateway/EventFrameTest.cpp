#include "gateway/EventFrame.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>

#include <gtest/gtest.h>

using namespace sim;

namespace {

/// The expected frame, written by Qt.
QString reference(const QCefEvent &event)
{
    const QJsonObject frame{{QStringLiteral("event"), event.eventName()},
                            {QStringLiteral("args"), QJsonArray::fromVariantList(event.arguments())}};
    return QString::fromUtf8(QJsonDocument(frame).toJson(QJsonDocument::Compact));
}

QCefEvent eventOf(const QVariantList &arguments, const QString &name = QStringLiteral("on_something"))
{
    QCefEvent event(name);
    event.arguments() = arguments;
    return event;
}

void expectSame(const QCefEvent &event)
{
    EXPECT_EQ(reference(event), eventFrame(event));
}

} // namespace

TEST(EventFrameTest, AReplyIsATextInAnArray)
{
    EXPECT_EQ(QStringLiteral("{\"args\":[\"{\\\"code\\\":\\\"0\\\"}\"],\"event\":\"Data_getToken_RES\"}"),
              eventFrame(eventOf({QStringLiteral("{\"code\":\"0\"}")}, QStringLiteral("Data_getToken_RES"))));
}

TEST(EventFrameTest, EveryCharacterIsWrittenAsQtWritesIt)
{
    constexpr int kTogether = 64;
    for (int first = 0; first <= 0xffff; first += kTogether) {
        QString text;
        for (int code = first; code < first + kTogether; ++code)
            text += QLatin1Char('a') + QString(QChar(ushort(code))); // no surrogate pairs
        const QCefEvent event = eventOf({text}, text);
        ASSERT_EQ(reference(event), eventFrame(event)) << first;
    }
}

TEST(EventFrameTest, EscapedAndSurrogateCharactersAreWrittenAsQtWritesThem)
{
    QRandomGenerator random(20250303);
    const ushort units[] = {'a',   '"',    '\\',   '\n',   0,      0x1f,   0x7f,   0x80,
                            0x7ff, 0x4e1c, 0xd800, 0xdbff, 0xdc00, 0xdfff, 0xfeff, 0xffff};
    for (int round = 0; round < 5000; ++round) {
        QString text;
        for (int length = random.bounded(8); length > 0; --length)
            text += QChar(units[random.bounded(int(std::size(units)))]);
        const QCefEvent event = eventOf({text, text}, text);
        ASSERT_EQ(reference(event), eventFrame(event)) << round;
    }
}

TEST(EventFrameTest, ArgumentsOfAnyTypeAndNumberAreWrittenAsQtWritesThem)
{
    expectSame(eventOf({}));
    expectSame(eventOf({QString()}));
    expectSame(eventOf({QVariant()}));
    expectSame(eventOf({QStringLiteral("one"), QStringLiteral("two"), QStringLiteral("东岚重工")}));
    expectSame(
        eventOf({7, -1.5, 1e300, qlonglong(1) << 60, true, QVariantList{1, QStringLiteral("\"")},
                 QVariantMap{{QStringLiteral("b"), 1}, {QStringLiteral("a"), QVariant()}}, QByteArray("bytes")}));
    expectSame(eventOf({QString(100000, QLatin1Char('"'))}));
}

TEST(EventFramesTest, CopiesOfAnEventShareOneText)
{
    EventFrames frames;
    const QCefEvent event = eventOf({QStringLiteral("东")});
    const EventFrame frame = frames.of(event);
    EXPECT_EQ(eventFrame(event).toUtf8(), frame.text);
    EXPECT_EQ(frame.text.constData(), frames.of(QCefEvent(event)).text.constData());
}

TEST(EventFramesTest, OtherEventsHaveTextsOfTheirOwn)
{
    EventFrames frames;
    QCefEvent event = eventOf({QStringLiteral("a")});
    frames.of(event);
    const QCefEvent other = eventOf({QStringLiteral("a")}, QStringLiteral("on_other"));
    EXPECT_EQ(eventFrame(other).toUtf8(), frames.of(other).text);
    event.arguments().append(QStringLiteral("b"));
    EXPECT_EQ(eventFrame(event).toUtf8(), frames.of(event).text);
    event.arguments()[0] = QStringLiteral("c"); // after its frame was made
    EXPECT_EQ(eventFrame(event).toUtf8(), frames.of(event).text);
    for (const char *name : {"on_first", "on_second"}) { // all empty lists of arguments are one
        const QCefEvent empty{QString(QLatin1String(name))};
        EXPECT_EQ(eventFrame(empty).toUtf8(), frames.of(empty).text);
    }
}

TEST(EventFramesTest, TheSymbolOfATickIsKnown)
{
    const auto symbolOf = [](const char *text, const char *event = "on_tickUpdate") {
        return EventFrames().of(eventOf({QString::fromUtf8(text)}, QLatin1String(event))).tickOf;
    };
    EXPECT_EQ(QStringLiteral("609801.SH"), symbolOf("{\"last\":18.02,\"symbol\":\"609801.SH\",\"time\":\"x\"}"));
    EXPECT_EQ(QStringLiteral("B"), symbolOf("{\"name\":\"\\\"symbol\\\":\\\"A\\\"\",\"symbol\":\"B\"}"));
    EXPECT_NE(symbolOf("{\"symbol\":\"A\\\"B\"}"), symbolOf("{\"symbol\":\"A\\\"C\"}")); // not cut at a quote in it
    EXPECT_NE(symbolOf("{\"symbol\":\"A\\\\\"}"), symbolOf("{\"symbol\":\"A\"}"));
    EXPECT_EQ(QString(), symbolOf("{\"last\":18.02}"));
    EXPECT_EQ(QString(), symbolOf(""));
    EXPECT_EQ(QString(), symbolOf("{\"symbol\":\"A\"}", "Data_getCurrentTick_RES"));
}

TEST(EventFramesTest, AnswersToSubscriptionsHoldTicksBack)
{
    const auto holds = [](const char *event) {
        return EventFrames().of(eventOf({QString()}, QLatin1String(event))).holdsTicksBack;
    };
    for (const char *event : {"Sub_subscribe_RES", "UnSub_subscribe_RES", "UnSub_subscribeAll_RES"})
        EXPECT_TRUE(holds(event)) << event;
    for (const char *event : {"on_tickUpdate", "Data_getToken_RES", "on_orderLoaded"})
        EXPECT_FALSE(holds(event)) << event;
}
