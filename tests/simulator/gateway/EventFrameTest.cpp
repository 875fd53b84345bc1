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
