#include "JsonPieces.h"

#include <QCborMap>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <limits>

// What pages see of containers, numbers and texts. The writer does what QJsonDocument does, its oddities too; the
// property test compares the two for all values, these tests state the texts.

namespace {

TEST(JsonWriter, WritesContainersInOneAnother)
{
    const QVariantMap map{{QStringLiteral("list"), QVariantList{1, QVariantMap{{QStringLiteral("deep"), true}}}},
                          {QStringLiteral("texts"), QStringList{QStringLiteral("a"), QStringLiteral("b")}},
                          {QStringLiteral("hash"), QVariantHash{{QStringLiteral("k"), QVariant()}}}};
    EXPECT_EQ(compactJson(map), QStringLiteral(R"({"hash":{"k":null},"list":[1,{"deep":true}],"texts":["a","b"]})"));
    EXPECT_EQ(compactJson(QVariantHash{{QStringLiteral("k"), map.value(QStringLiteral("list"))}}),
              QStringLiteral(R"({"k":[1,{"deep":true}]})"));
}

TEST(JsonWriter, WritesEmptyContainers)
{
    EXPECT_EQ(compactJson(QVariantMap()), QStringLiteral("{}"));
    EXPECT_EQ(compactJson(QVariantHash()), QStringLiteral("{}"));
    EXPECT_EQ(compactJson(QVariantList()), QStringLiteral("[]"));
    EXPECT_EQ(compactJson(QStringList()), QStringLiteral("[]"));
    EXPECT_EQ(compactJson(QVariant(QVariant::Map)), QStringLiteral("{}")); // a null variant of the type
    EXPECT_EQ(compactJson(QVariant(QVariant::List)), QStringLiteral("[]"));
    EXPECT_EQ(compactJson(QVariantList{QVariantMap(), QVariantHash(), QVariantList(), QStringList()}),
              QStringLiteral("[{},{},[],[]]"));
}

TEST(JsonWriter, GivesTheEmptyTextForAnythingThatIsNoContainer)
{
    for (const QVariant &value : {QVariant(), QVariant(7), QVariant(true), QVariant(QStringLiteral("[]")),
                                  QVariant::fromValue(nullptr), QVariant(QByteArray("{}"))})
        EXPECT_EQ(compactJson(value), QString()) << value.typeName();
}

TEST(JsonWriter, GivesTheEmptyTextForJsonItself)
{
    EXPECT_EQ(compactJson(QJsonObject()), QString());
    EXPECT_EQ(compactJson(QJsonArray()), QString());
    EXPECT_EQ(compactJson(QJsonDocument(QJsonArray())), QString());
    EXPECT_EQ(compactJson(QVariant::fromValue(QCborMap())), QString());
}

TEST(JsonWriter, WritesWholeNumbers)
{
    EXPECT_EQ(inList(0), QStringLiteral("0"));
    EXPECT_EQ(inList(std::numeric_limits<int>::min()), QStringLiteral("-2147483648"));
    EXPECT_EQ(inList(std::numeric_limits<uint>::max()), QStringLiteral("4294967295"));
    EXPECT_EQ(inList(qlonglong(9007199254740991)), QStringLiteral("9007199254740991"));
    EXPECT_EQ(inList(QVariant(QVariant::Int)), QStringLiteral("0")); // a null variant of the type
}

// Numbers are doubles: an id of more than 53 bits does not survive.
TEST(JsonWriter, RoundsWholeNumbersThatADoubleDoesNotHold)
{
    EXPECT_EQ(inList(qlonglong(9007199254740993)), QStringLiteral("9007199254740992"));
    EXPECT_EQ(inList(std::numeric_limits<qlonglong>::max()), QStringLiteral("9223372036854776000"));
    EXPECT_EQ(inList(std::numeric_limits<qlonglong>::min()), QStringLiteral("-9223372036854776000"));
    EXPECT_EQ(inList(std::numeric_limits<qulonglong>::max()), QStringLiteral("18446744073709552000"));
}

TEST(JsonWriter, WritesAnUnsignedNumberAsNegativeInAHashThatIsInAnotherContainer)
{
    constexpr qulonglong half = 1ULL << 63U;
    EXPECT_EQ(inHash(half), QStringLiteral("9223372036854776000"));
    EXPECT_EQ(inHashInList(half), QStringLiteral("-9223372036854776000"));
    EXPECT_EQ(inHashInList(std::numeric_limits<qulonglong>::max()), QStringLiteral("-1"));
    EXPECT_EQ(inHashInList(half - 1), QStringLiteral("9223372036854776000"));
}

TEST(JsonWriter, WritesWholeDoublesBelowTwoToThePowerOf64WithoutAnExponent)
{
    EXPECT_EQ(inList(1.0), QStringLiteral("1"));
    EXPECT_EQ(inList(-100.0), QStringLiteral("-100"));
    EXPECT_EQ(inList(1e6), QStringLiteral("1000000"));
    EXPECT_EQ(inList(1e15), QStringLiteral("1000000000000000"));
    EXPECT_EQ(inList(1e19), QStringLiteral("10000000000000000000"));
    EXPECT_EQ(inList(-1.5e19), QStringLiteral("-15000000000000000000"));
    EXPECT_EQ(inList(2e19), QStringLiteral("2e+19"));
    EXPECT_EQ(inList(1e21), QStringLiteral("1e+21"));
}

TEST(JsonWriter, WritesLargerDoublesWithAnExponentWhereThatIsShorter)
{
    EXPECT_EQ(inList(18446744073709551616.0), QStringLiteral("18446744073709552000")); // two to the power of 64
    EXPECT_EQ(inList(98765432101234500000.0), QStringLiteral("98765432101234500000"));
    EXPECT_EQ(inList(98765432101234000000.0), QStringLiteral("9.8765432101234e+19"));
    EXPECT_EQ(inList(123456789012345678901.0), QStringLiteral("123456789012345680000"));
    EXPECT_EQ(inList(1e300), QStringLiteral("1e+300"));
}

TEST(JsonWriter, WritesFractionsWithTheFewestDigitsThatGiveThemBack)
{
    EXPECT_EQ(inList(12.34), QStringLiteral("12.34"));
    EXPECT_EQ(inList(0.1), QStringLiteral("0.1"));
    EXPECT_EQ(inList(0.1 + 0.2), QStringLiteral("0.30000000000000004"));
    EXPECT_EQ(inList(-0.5), QStringLiteral("-0.5"));
    EXPECT_EQ(inList(-1234567.5), QStringLiteral("-1234567.5"));
    EXPECT_EQ(inList(921230177216.9427), QStringLiteral("921230177216.9427")); // ….9428 is the same double
    EXPECT_EQ(inList(0.0001), QStringLiteral("0.0001"));
    EXPECT_EQ(inList(0.00012345), QStringLiteral("0.00012345"));
    EXPECT_EQ(inList(0.00001), QStringLiteral("1e-05"));
    EXPECT_EQ(inList(1.5e-7), QStringLiteral("1.5e-07"));
    EXPECT_EQ(inList(5e-324), QStringLiteral("5e-324"));
    EXPECT_EQ(inList(std::numeric_limits<double>::max()), QStringLiteral("1.7976931348623157e+308"));
    EXPECT_EQ(inList(0.1F), QStringLiteral("0.10000000149011612")); // a float is the double that it equals
}

TEST(JsonWriter, WritesNegativeZeroAsZero)
{
    EXPECT_EQ(inList(-0.0), QStringLiteral("0"));
    EXPECT_EQ(inHash(-0.0), QStringLiteral("0"));
    EXPECT_EQ(inList(-0.0F), QStringLiteral("0"));
}

TEST(JsonWriter, WritesNumbersThatAreNoneAsNull)
{
    EXPECT_EQ(inList(qQNaN()), QStringLiteral("null"));
    EXPECT_EQ(inList(qInf()), QStringLiteral("null"));
    EXPECT_EQ(inHash(-qInf()), QStringLiteral("null"));
    EXPECT_EQ(inList(float(qQNaN())), QStringLiteral("null"));
}

TEST(JsonWriter, WritesRarerNumberTypesAsTexts)
{
    EXPECT_EQ(inList(QVariant::fromValue<long>(-5)), QStringLiteral(R"("-5")"));
    EXPECT_EQ(inList(QVariant::fromValue<ulong>(5)), QStringLiteral(R"("5")"));
    EXPECT_EQ(inList(QVariant::fromValue<char>('A')), QStringLiteral(R"("A")"));
    EXPECT_EQ(inList(QVariant::fromValue<uchar>(0xe9)), QStringLiteral(R"("é")"));
    EXPECT_EQ(inList(QVariant::fromValue<short>(-5)), QStringLiteral("-5"));
    EXPECT_EQ(inHash(QVariant::fromValue<short>(-5)), QStringLiteral(R"("-5")"));
    EXPECT_EQ(inHash(QVariant::fromValue<ushort>(5)), QStringLiteral(R"("5")"));
}

TEST(JsonWriter, EscapesQuotesBackslashesAndControlCharacters)
{
    EXPECT_EQ(inList(QStringLiteral("say \"hi\"\\")), QStringLiteral(R"("say \"hi\"\\")"));
    EXPECT_EQ(inList(QStringLiteral("\b\t\n\f\r")), QStringLiteral(R"("\b\t\n\f\r")"));
    EXPECT_EQ(inList(character(0) + character(1) + character(0x0b) + character(0x1f)),
              QStringLiteral(R"("\u0000\u0001\u000b\u001f")"));
}

TEST(JsonWriter, LeavesAllOtherCharactersAsTheyAre)
{
    const ushort units[] = {'/',    '\'',   '<',    '&',    0x7f,   0x80,   0x9f,   0xe9,  0x2028,
                            0x2029, 0x6c49, 0xe000, 0xfdd0, 0xfeff, 0xfffd, 0xfffe, 0xffff};
    for (const ushort unit : units) {
        const QString text = character(unit);
        EXPECT_EQ(inList(text), QLatin1Char('"') + text + QLatin1Char('"')) << std::hex << unit;
    }
    EXPECT_EQ(inList(QStringLiteral("汉字𝄞")), QStringLiteral("\"汉字𝄞\""));
}

TEST(JsonWriter, EscapesSurrogatesThatAreAlone)
{
    const QString high = character(0xd834);
    const QString low = character(0xdd1e);
    EXPECT_EQ(inList(high), QStringLiteral(R"("\ud834")"));
    EXPECT_EQ(inList(low + QLatin1Char('x')), QStringLiteral(R"("\udd1ex")"));
    EXPECT_EQ(inList(low + high), QStringLiteral(R"("\udd1e\ud834")"));
    EXPECT_EQ(inList(high + high + low), QStringLiteral(R"("\ud834𝄞")"));
}

TEST(JsonWriter, WritesTheNullTextAsAnEmptyOne)
{
    EXPECT_EQ(inList(QString()), QStringLiteral(R"("")"));
    EXPECT_EQ(inList(QStringLiteral("")), QStringLiteral(R"("")"));
    EXPECT_EQ(inHash(QString()), QStringLiteral(R"("")"));
    EXPECT_EQ(compactJson(QStringList{QString()}), QStringLiteral(R"([""])"));
}

TEST(JsonWriter, EscapesAtAnyPlaceOfALongText)
{
    const struct {
        ushort unit;
        QLatin1String written;
    } escapes[] = {{'\n', QLatin1String("\\n")},
                   {'"', QLatin1String("\\\"")},
                   {0x1f, QLatin1String("\\u001f")},
                   {0, QLatin1String("\\u0000")},
                   {0xd800, QLatin1String("\\ud800")}};
    for (const auto &escape : escapes) {
        for (const int length : {9, 1024, 2048, 5000}) {
            for (const int place : {0, 1, 2, 3, 4, 5, 6, 7, length - 2, length - 1}) {
                const QString before(place, QChar(0x6c49));
                const QString after(length - 1 - place, QLatin1Char('a'));
                EXPECT_EQ(inList(before + QChar(escape.unit) + after),
                          QLatin1Char('"') + before + escape.written + after + QLatin1Char('"'))
                    << escape.unit << " at " << place << " of " << length;
            }
        }
    }
}

TEST(JsonWriter, GivesTextsWithoutRoomToSpare)
{
    for (const int length : {10, 2040, 2100, 9000, 3'000'000}) {
        const QString text = compactJson(QVariantList{QString(length, QLatin1Char('a'))});
        EXPECT_LE(text.capacity(), text.size() + 16) << length;
    }
}

TEST(JsonWriter, WritesTextsOfAnyLength)
{
    for (int length = 0; length <= 4100; ++length) {
        const QString plain(length, QLatin1Char('a'));
        ASSERT_EQ(inList(plain), QLatin1Char('"') + plain + QLatin1Char('"')) << length;
        const QString zeros(length, QChar(0));
        ASSERT_EQ(inList(zeros), QLatin1Char('"') + QStringLiteral("\\u0000").repeated(length) + QLatin1Char('"'))
            << length;
    }
}

} // namespace
