#include "common/PageArguments.h"

#include <gmock/gmock.h>

using namespace PageArguments;

namespace {

/// Answers with the parameters that it gets, and counts its calls.
struct Echo {
    int calls = 0;

    QString text(const QString &uuid, const QString &parameter)
    {
        ++calls;
        return uuid + QLatin1Char('|') + parameter;
    }
};

TEST(TextReading, GivesTheDecimalTextOfANumberAndNothingForNull)
{
    EXPECT_EQ(Text::read(7), QStringLiteral("7"));
    EXPECT_EQ(Text::read(qlonglong(9007199254740993)), QStringLiteral("9007199254740993"));
    EXPECT_EQ(Text::read(1000000.0), QStringLiteral("1e+06"));
    EXPECT_EQ(Text::read(true), QStringLiteral("true"));
    EXPECT_EQ(Text::read(QVariant()), QString());
    EXPECT_EQ(Text::read(QVariant::fromValue(nullptr)), QString());
    EXPECT_EQ(Text::read(QVariantMap{{QStringLiteral("a"), 1}}), QString());
    EXPECT_EQ(Text::read(QVariantList{1, 2}), QString());
}

TEST(IntegerReading, GoesThroughTheTextAndGivesZeroWhenThatIsNoInteger)
{
    const struct {
        QVariant argument;
        int expected;
    } readings[] = {
        {QStringLiteral("42"), 42},
        {42, 42},
        {QStringLiteral(" 100 "), 100},
        {QStringLiteral("10\n"), 10},
        {QStringLiteral("+100"), 100},
        {QStringLiteral("-5"), -5},
        {QStringLiteral("010"), 10},
        {QStringLiteral("2147483647"), 2147483647},
        {QStringLiteral("2147483648"), 0},
        {QStringLiteral("0x10"), 0},
        {QStringLiteral("1e3"), 0},
        {QStringLiteral("1,000"), 0},
        {QStringLiteral("１２"), 0},
        {QStringLiteral("abc"), 0},
        {QString(), 0},
        {100.5, 0},
        {true, 0},
        {QVariant(), 0},
        {QVariantList{1}, 0},
    };
    for (const auto &reading : readings)
        EXPECT_EQ(Integer::read(reading.argument), reading.expected) << qPrintable(reading.argument.toString());
}

TEST(VariantReading, PassesTheArgumentOnUnchanged)
{
    const QVariantMap map{{QStringLiteral("symbol"), QVariantList{QStringLiteral("a")}}};
    EXPECT_EQ(Variant::read(map), QVariant(map));
    EXPECT_FALSE(Variant::read(QVariant()).isValid());
}

TEST(CommaListReading, KeepsEmptyParts)
{
    EXPECT_EQ(CommaList::read(QStringLiteral("1001,1002")),
              (QStringList{QStringLiteral("1001"), QStringLiteral("1002")}));
    EXPECT_EQ(CommaList::read(QStringLiteral("a,,b")),
              (QStringList{QStringLiteral("a"), QString(), QStringLiteral("b")}));
    EXPECT_EQ(CommaList::read(QString()), QStringList{QString()});
    EXPECT_EQ(CommaList::read(QStringLiteral(",")), (QStringList{QString(), QString()}));
    EXPECT_EQ(CommaList::read(QStringLiteral("a, b")), (QStringList{QStringLiteral("a"), QStringLiteral(" b")}));
    EXPECT_EQ(CommaList::read(5), QStringList{QStringLiteral("5")});
}

TEST(Answer, IsEmptyAndCallsNothingWhenThereAreTooFewArguments)
{
    Echo echo;
    EXPECT_EQ(answer<Text>(QVariantList{QStringLiteral("u1")}, &Echo::text, &echo), QString());
    EXPECT_EQ(answer<Text>(QVariantList(), &Echo::text, &echo), QString());
    EXPECT_EQ(echo.calls, 0);
}

TEST(Answer, ReadsTheUuidAsTextAndIgnoresSurplusArguments)
{
    Echo echo;
    const QVariantList args{7, QStringLiteral("p"), QStringLiteral("surplus"), QVariantMap()};
    EXPECT_EQ(answer<Text>(args, &Echo::text, &echo), QStringLiteral("7|p"));
    EXPECT_EQ(echo.calls, 1);
}

} // namespace
