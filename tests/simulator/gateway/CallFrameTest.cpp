#include "gateway/CallFrame.h"

#include <gtest/gtest.h>

using namespace sim;

namespace {

const QChar kMark(0xfeff);

QByteArray call(const QString &method, const QString &args)
{
    return QStringLiteral("{\"invoke\":\"%1\",\"args\":[%2]}").arg(method, args).toUtf8();
}

} // namespace

TEST(CallFrameTest, ByteOrderMarksInTextsAreKept)
{
    const QString mark(kMark);
    const QString texts = QStringLiteral("\"%1u\",\"a%1b\",\"%1\",\"%1%1\",{\"%1k\":\"%1v\"}").arg(kMark);
    const CallFrame frame = CallFrame::read(call(mark + QLatin1String("m"), texts));
    ASSERT_EQ(0, frame.closeCode) << qPrintable(frame.closeReason);
    EXPECT_EQ(mark + QLatin1String("m"), frame.method);
    const QVariantMap map{{mark + QLatin1Char('k'), mark + QLatin1Char('v')}};
    const QVariantList expected{mark + QLatin1Char('u'), QLatin1Char('a') + mark + QLatin1Char('b'), mark, mark + mark,
                                map};
    EXPECT_EQ(expected, frame.args);
}

TEST(CallFrameTest, AnEscapedByteOrderMarkIsTheSame)
{
    const CallFrame frame =
        CallFrame::read(call(QStringLiteral("m"), QStringLiteral("\"\\ufeffu\",\"\\\\%1\"").arg(kMark)));
    EXPECT_EQ((QVariantList{QString(kMark) + QLatin1Char('u'), QLatin1Char('\\') + QString(kMark)}), frame.args);
}

TEST(CallFrameTest, AByteOrderMarkOutsideOfTextsIsNoCallButAtTheBeginning)
{
    const QByteArray good = call(QStringLiteral("m"), QStringLiteral("1"));
    EXPECT_EQ(0, CallFrame::read(QString(kMark).toUtf8() + good).closeCode);
    for (const QByteArray &bad : {good + QString(kMark).toUtf8(), call(QStringLiteral("m"), QString(kMark)),
                                  call(QStringLiteral("m"), QStringLiteral("1,") + kMark)})
        EXPECT_EQ(1007, CallFrame::read(bad).closeCode) << bad.constData();
}

TEST(CallFrameTest, TheSizeIsThatOfTheFrame)
{
    const QByteArray text = call(QStringLiteral("m"), QStringLiteral("\"%1\"").arg(kMark));
    EXPECT_EQ(text.size(), CallFrame::read(text).size);
}
