#include "HostileValues.h"

#include "VarnelCefView.h"

#include <cmath>
#include <limits>

namespace {

/// A QString, as Qt 6 spells it.
QString operator""_qs(const char16_t *text, std::size_t length)
{
    return QString(reinterpret_cast<const QChar *>(text), int(length));
}

constexpr int deep = 1000; // Qt's JSON reader takes 1024 levels

QVariant nestedLists()
{
    QVariantList list{1};
    for (int level = 1; level < deep; ++level)
        list = QVariantList{QVariant(list)};
    return list;
}

QVariant nestedMaps()
{
    QVariantMap map{{u"a"_qs, 1}};
    for (int level = 1; level < deep; ++level)
        map = QVariantMap{{u"a"_qs, map}};
    return map;
}

HostileValue text(const char *name, const QString &text)
{
    return {name, text, text};
}

} // namespace

QList<HostileValue> hostileValues()
{
    const QString loneHigh(QChar(0xD800));
    const QString loneLow(QChar(0xDC00));
    return {
        // Types. What has no text is read as the empty text.
        {"invalid", QVariant(), {}},
        {"null", QVariant::fromValue(nullptr), {}},
        {"null text", QString(), {}},
        text("empty text", u""_qs),
        {"true", true, u"true"_qs},
        {"map", QVariantMap{{u"a"_qs, QVariant()}, {loneHigh, 1}}, {}},
        {"empty map", QVariantMap(), {}},
        {"list", QVariantList{QVariant(), 1, u"x"_qs, QVariantMap()}, {}},
        {"empty list", QVariantList(), {}},
        {"texts", QStringList{u"a"_qs, QString()}, {}},
        {"object pointer", QVariant::fromValue<QObject *>(nullptr), {}},
        {"view pointer", QVariant::fromValue<VarnelCefView *>(nullptr), {}},
        // Depth
        {"nested lists", nestedLists(), {}},
        {"nested maps", nestedMaps(), {}},
        text("nested JSON", QString(deep, u'[') + QString(deep, u']')),
        text("JSON nested too deep", QString(100 * deep, u'[') + QString(100 * deep, u']')),
        // JSON that is broken, or has other types than expected
        text("cut JSON", u"[[[{\"a\":"_qs),
        text("JSON of other types", u"{\"fundAccount\":{},\"symbol\":[null,[],1],\"symbolFilter\":[null,1,{}]}"_qs),
        text("JSON list of other types", u"[null,1,\"x\",[],{\"qty\":{},\"price\":[1]}]"_qs),
        text("JSON with a lone surrogate", u"{\"symbol\":[\"\\ud800\"]}"_qs),
        // Characters
        text("many commas", QString(1 << 8, u',')),
        text("lone high surrogate", loneHigh),
        text("lone low surrogate", loneLow + u"x"_qs),
        text("NUL", u"a"_qs + QChar(0) + u"b"_qs),
        text("control characters", u"\u0001\b\t\n\u000b\f\r\u001b\u001f\u007f\u0085\u2028\u2029"_qs),
        text("right to left", u"\u202e\u05d0\u0627\u200f123"_qs),
        text("combining characters", u"e\u0301"_qs + QString(200, QChar(0x0301))),
        text("byte order mark and non-characters", u"a\ufeff\ufffe\uffff"_qs),
        text("quotes and backslashes", u"\"\\\"\\u0000'</script>"_qs),
        {"invalid UTF-8", QByteArray("a\xff\xfe\xc3"), u"a"_qs + QString(3, QChar(0xFFFD))},
        {"bytes with NUL", QByteArray("a\0b", 3), u"a"_qs},
        // Numbers
        {"minus one", -1, u"-1"_qs},
        {"2^31", qlonglong(1) << 31, u"2147483648"_qs},
        {"-2^31 - 1", -(qlonglong(1) << 31) - 1, u"-2147483649"_qs},
        {"2^53 + 1", (qlonglong(1) << 53) + 1, u"9007199254740993"_qs},
        {"2^63 - 1", std::numeric_limits<qlonglong>::max(), u"9223372036854775807"_qs},
        {"-2^63", std::numeric_limits<qlonglong>::min(), u"-9223372036854775808"_qs},
        {"2^64 - 1", std::numeric_limits<qulonglong>::max(), u"18446744073709551615"_qs},
        {"2^53 as a double", 9007199254740992.0, u"9007199254740992"_qs},
        {"2^63 as a double", 9223372036854775808.0, u"9223372036854776000"_qs},
        {"NaN", std::nan(""), u"nan"_qs},
        {"infinity", std::numeric_limits<double>::infinity(), u"inf"_qs},
        {"minus infinity", -std::numeric_limits<double>::infinity(), u"-inf"_qs},
        text("1e999", u"1e999"_qs),
        text("a number past 2^63", u"9223372036854775808"_qs),
        text("a number of 300 digits", QString(300, u'9')),
        text("hexadecimal", u"0x10"_qs),
        text("Arabic digits", u"\u0661\u0662"_qs),
    };
}

HostileValue endlessText()
{
    return text("endless text", QString(10'000'000, u'x'));
}
