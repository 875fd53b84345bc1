#include "JsonPieces.h"

#include <QBitArray>
#include <QCborArray>
#include <QCborMap>
#include <QDateTime>
#include <QEasingCurve>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QMultiHash>
#include <QMultiMap>
#include <QRegularExpression>
#include <QSize>
#include <QThread>
#include <QTimeZone>
#include <QUrl>
#include <QUuid>
#include <memory>

// What pages see of keys, of rarer types and of deep nesting: what QJsonDocument writes, its oddities too.

/// Types of our own: one with a text, one without.
struct Greeting {
    QString words;
    QString toText() const { return words; }
};
struct Silence {};
Q_DECLARE_METATYPE(Greeting)
Q_DECLARE_METATYPE(Silence)

namespace {

template <class T>
QVariant variant(const T &value)
{
    return QVariant::fromValue(value);
}

QVariant undefined()
{
    return variant(QJsonValue(QJsonValue::Undefined));
}

TEST(JsonWriterKeys, SortsByTheUnitsOfUtf16)
{
    // A pair begins with U+D800 to U+DBFF, so it comes before U+E000.
    const QString sorted = QStringLiteral(R"({"":0,"A":0,"a":0,"aa":0,"b":0,"é":0,"汉":0,"𝄞":0,)") + QLatin1Char('"') +
                           character(0xe000) + QLatin1String("\":0}");
    QVariantMap map;
    QVariantHash hash;
    for (const QString &key :
         {character(0xe000), QStringLiteral("𝄞"), QStringLiteral("汉"), QStringLiteral("é"), QStringLiteral("b"),
          QStringLiteral("aa"), QStringLiteral("a"), QStringLiteral("A"), QString()}) {
        map.insert(key, 0);
        hash.insert(key, 0);
    }
    EXPECT_EQ(compactJson(map), sorted);
    EXPECT_EQ(compactJson(hash), sorted);
    EXPECT_EQ(inList(hash), sorted);
}

TEST(JsonWriterKeys, EscapesAsInTexts)
{
    EXPECT_EQ(compactJson(QVariantMap{
                  {character(0), 0}, {QStringLiteral("\n"), 1}, {QStringLiteral("\"\\"), 2}, {character(0xd800), 3}}),
              QStringLiteral(R"({"\u0000":0,"\n":1,"\"\\":2,"\ud800":3})"));
}

TEST(JsonWriterKeys, KeepsKeysApartThatUtf8CannotTellApart)
{
    EXPECT_EQ(compactJson(QVariantMap{{character(0xd801), 1}, {character(0xd800), 2}, {character(0xfffd), 3}}),
              QStringLiteral(R"({"\ud800":2,"\ud801":1,"�":3})"));
}

TEST(JsonWriterKeys, WritesTheOldestValueOfAKeyThatIsThereTwice)
{
    const QString key = QStringLiteral("k");
    const QMultiMap<QString, QVariant> map{{key, 1}, {key, 2}, {key, 3}, {QStringLiteral("l"), 4}};
    const QMultiHash<QString, QVariant> hash{{key, 1}, {key, 2}, {key, 3}};
    EXPECT_EQ(compactJson(QVariantMap(map)), QStringLiteral(R"({"k":1,"l":4})"));
    EXPECT_EQ(compactJson(QVariantHash(hash)), QStringLiteral(R"({"k":1})"));
    EXPECT_EQ(inList(QVariantHash(hash)), QStringLiteral(R"({"k":1})"));
}

TEST(JsonWriterKeys, AreLeftOutForUndefinedInAHashThatNothingButHashesSurrounds)
{
    const QVariantHash hash{{QStringLiteral("k"), undefined()}};
    EXPECT_EQ(compactJson(hash), QStringLiteral("{}"));
    EXPECT_EQ(inHash(hash), QStringLiteral("{}"));
    EXPECT_EQ(inList(hash), QStringLiteral(R"({"k":null})"));
    EXPECT_EQ(compactJson(QVariantMap{{QStringLiteral("k"), undefined()}}), QStringLiteral(R"({"k":null})"));
}

TEST(JsonWriterTypes, WritesAsNullWhatHasNoText)
{
    for (const QVariant &value :
         {QVariant(), variant(nullptr), variant<void *>(nullptr), variant<QObject *>(nullptr), QVariant(QSize(1, 2)),
          QVariant(QLocale::c()), QVariant(QEasingCurve()), QVariant(QBitArray(3)),
          QVariant(QRegularExpression(QStringLiteral("a"))), variant(QList<QVariantMap>{QVariantMap()}),
          variant(Silence()), variant(Qt::Alignment(Qt::AlignLeft))}) {
        EXPECT_EQ(inList(value), QStringLiteral("null")) << value.typeName();
        EXPECT_EQ(inHash(value), QStringLiteral("null")) << value.typeName();
    }
}

TEST(JsonWriterTypes, WritesTheNameOfAnEnumerator)
{
    EXPECT_EQ(inList(variant(QLocale::Chinese)), QStringLiteral(R"("Chinese")"));
    EXPECT_EQ(inList(variant(QLocale::Language(511))), QStringLiteral("null"));
}

TEST(JsonWriterTypes, WritesTheTextThatATypeHasForItself)
{
    ASSERT_TRUE(QMetaType::registerConverter(&Greeting::toText));
    EXPECT_EQ(inList(variant(Greeting{QStringLiteral("你好")})), QStringLiteral(R"("你好")"));
    const QVariant empty = variant(Greeting{QStringLiteral("")});
    EXPECT_EQ(inList(empty), QStringLiteral(R"("")"));
    EXPECT_EQ(inHash(empty), QStringLiteral("null"));
    EXPECT_EQ(inList(variant(Greeting{QString()})), QStringLiteral("null")); // the null text
}

TEST(JsonWriterTypes, WritesACharacterAsAText)
{
    EXPECT_EQ(inList(QChar(0x6c49)), QStringLiteral(R"("汉")"));
    EXPECT_EQ(inList(QChar(0xd800)), QStringLiteral(R"("\ud800")"));
    EXPECT_EQ(inList(QChar()), QStringLiteral("null"));
    EXPECT_EQ(inHash(QChar()), QStringLiteral(R"("\u0000")"));
}

TEST(JsonWriterTypes, ReadsBytesAsUtf8)
{
    EXPECT_EQ(inList(QByteArray("\xe6\xb1\x89")), QStringLiteral(R"("汉")"));
    EXPECT_EQ(inList(QByteArray("a\xff\xe6\xb1")), QStringLiteral(R"("a���")"));
    EXPECT_EQ(inList(QByteArray("\xef\xbb\xbf"
                                "a")),
              QStringLiteral(R"("a")")); // without its byte order mark
    EXPECT_EQ(inList(QByteArray("")), QStringLiteral("null"));
    EXPECT_EQ(inList(QByteArray()), QStringLiteral("null"));
    const QByteArray zero("a\0b", 3);
    EXPECT_EQ(inList(zero), QStringLiteral(R"("a\u0000b")"));
    EXPECT_EQ(inHash(zero), QStringLiteral(R"("a")"));
}

TEST(JsonWriterTypes, WritesDatesAndTimesWithMilliseconds)
{
    const QDate date(2024, 2, 29);
    const QTime time(1, 2, 3, 4);
    EXPECT_EQ(inList(date), QStringLiteral(R"("2024-02-29")"));
    EXPECT_EQ(inList(time), QStringLiteral(R"("01:02:03.004")"));
    EXPECT_EQ(inList(QTime(1, 2, 3)), QStringLiteral(R"("01:02:03.000")"));
    EXPECT_EQ(inList(QDateTime(date, time)), QStringLiteral(R"("2024-02-29T01:02:03.004")"));
    EXPECT_EQ(inList(QDateTime(date, time, Qt::UTC)), QStringLiteral(R"("2024-02-29T01:02:03.004Z")"));
    EXPECT_EQ(inList(QDateTime(date, time, QTimeZone(8 * 3600))), QStringLiteral(R"("2024-02-29T01:02:03.004+08:00")"));
}

TEST(JsonWriterTypes, WritesNoInvalidDate)
{
    EXPECT_EQ(inList(QDate()), QStringLiteral("null"));
    EXPECT_EQ(inList(QDate(10000, 1, 1)), QStringLiteral("null")); // ISO 8601 has no fifth digit
    EXPECT_EQ(inList(QTime()), QStringLiteral("null"));
    EXPECT_EQ(inList(QDateTime()), QStringLiteral(R"("")"));
    EXPECT_EQ(inHash(QDateTime()), QStringLiteral("null"));
}

TEST(JsonWriterTypes, WritesAddressesEncodedAndIdentifiersBare)
{
    EXPECT_EQ(inList(QUrl(QStringLiteral("http://例.example/汉 字?q#f"))),
              QStringLiteral(R"("http://xn--fsq.example/%E6%B1%89%20%E5%AD%97?q#f")"));
    EXPECT_EQ(inList(QUrl()), QStringLiteral(R"("")"));
    EXPECT_EQ(inList(QUuid(QStringLiteral("{01234567-89ab-cdef-0123-456789abcdef}"))),
              QStringLiteral(R"("01234567-89ab-cdef-0123-456789abcdef")"));
    EXPECT_EQ(inList(QUuid()), QStringLiteral(R"("00000000-0000-0000-0000-000000000000")"));
}

TEST(JsonWriterTypes, WritesJsonAsItIs)
{
    EXPECT_EQ(inList(QJsonObject{{QStringLiteral("b"), 1.5}, {QStringLiteral("a"), QJsonArray{true, QJsonValue()}}}),
              QStringLiteral(R"({"a":[true,null],"b":1.5})"));
    EXPECT_EQ(inList(QJsonDocument(QJsonArray{1})), QStringLiteral("[1]"));
    EXPECT_EQ(inList(QJsonDocument()), QStringLiteral("{}"));
    EXPECT_EQ(inList(variant(QJsonValue(QStringLiteral("x")))), QStringLiteral(R"("x")"));
    EXPECT_EQ(inList(undefined()), QStringLiteral("null"));
}

TEST(JsonWriterTypes, WritesCborAsJson)
{
    EXPECT_EQ(inList(variant(QCborValue(1.5))), QStringLiteral("1.5"));
    EXPECT_EQ(inList(variant(QCborValue())), QStringLiteral("null"));
    EXPECT_EQ(inList(variant(QCborValue(QCborSimpleType(42)))), QStringLiteral(R"_("simple(42)")_"));
    EXPECT_EQ(inList(variant(QCborMap{{2, 1}, {QCborValue(true), 2}, {QStringLiteral("s"), 3}})),
              QStringLiteral(R"({"2":1,"s":3,"true":2})"));
    EXPECT_EQ(inList(variant(QCborMap{{1, 1}, {QStringLiteral("1"), 2}})), QStringLiteral(R"({"1":2})"));
}

TEST(JsonWriterTypes, WritesBytesInCborByWhatSurroundsThem)
{
    const QByteArray bytes("ab\xff");
    EXPECT_EQ(inList(variant(QCborValue(bytes))), QStringLiteral(R"("ab�")"));
    EXPECT_EQ(inHash(variant(QCborValue(bytes))), QStringLiteral(R"("YWL_")"));
    EXPECT_EQ(inList(variant(QCborArray{bytes})), QStringLiteral(R"(["ab�"])"));
    EXPECT_EQ(inHash(variant(QCborArray{bytes})), QStringLiteral(R"(["YWL_"])"));
    EXPECT_EQ(inList(variant(QCborValue(QCborKnownTags::ExpectedBase64, bytes))), QStringLiteral(R"("YWL/")"));
    EXPECT_EQ(inList(variant(QCborValue(QCborKnownTags::ExpectedBase16, bytes))), QStringLiteral(R"("6162ff")"));
}

TEST(JsonWriterTypes, DoesNotLookIntoAVariantInAVariant)
{
    const QVariant inner(7);
    EXPECT_EQ(inList(QVariant(QMetaType::QVariant, &inner)), QStringLiteral("null"));
}

// Far deeper than any host nests. A main thread's stack is large enough, except with a sanitizer's larger frames.
class JsonWriterDepth : public testing::Test {
protected:
    template <class Wrap>
    static void writes(Wrap wrap, const char *open, char close)
    {
        constexpr int levels = 20'000;
        bool isAsExpected = false;
        const std::unique_ptr<QThread> thread(QThread::create([&] {
            QVariant value = 7;
            for (int level = 0; level < levels; ++level)
                value = wrap(value);
            isAsExpected = compactJson(value) == QString::fromLatin1(open).repeated(levels) + QLatin1Char('7') +
                                                     QString(levels, QLatin1Char(close));
        }));
        thread->setStackSize(stackSize);
        thread->start();
        thread->wait();
        EXPECT_TRUE(isAsExpected); // texts of this length are not printed
    }

private:
#ifdef VARNEL_SANITIZED
    static constexpr uint stackSize = 64 * 1024 * 1024;
#else
    static constexpr uint stackSize = 8 * 1024 * 1024;
#endif
};

TEST_F(JsonWriterDepth, WritesManyLevelsOfLists)
{
    writes([](const QVariant &value) { return QVariantList{value}; }, "[", ']');
}

TEST_F(JsonWriterDepth, WritesManyLevelsOfMaps)
{
    writes([](const QVariant &value) { return QVariantMap{{QStringLiteral("k"), value}}; }, R"({"k":)", '}');
}

TEST_F(JsonWriterDepth, WritesManyLevelsOfHashes)
{
    writes([](const QVariant &value) { return QVariantHash{{QStringLiteral("k"), value}}; }, R"({"k":)", '}');
}

} // namespace
