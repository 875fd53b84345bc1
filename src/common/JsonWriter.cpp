#include "common/JsonWriter.h"

#include <QJsonDocument>
#include <QVariant>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

namespace {

/// The size of the largest QString.
constexpr std::ptrdiff_t maxCharacters = (std::numeric_limits<int>::max() - 64) / 2;

/// Up to here a double can hold every whole number.
constexpr qint64 maxExactInteger = Q_INT64_C(1) << 53;

/// The value inside the variant. The caller has checked that its type is T.
template <typename T>
const T &held(const QVariant &value)
{
    return *static_cast<const T *>(value.constData());
}

/// True for a character that is written as it is, whatever follows it.
bool isPlain(ushort character)
{
    if (character < 0x80)
        return character >= 0x20 && character != '"' && character != '\\';
    return !QChar::isSurrogate(character);
}

/// True when all of four characters are plain ASCII, as nearly all are. Each test sets the top bit of a lane that
/// passes it.
bool arePlain(quint64 four)
{
    constexpr quint64 lanes = Q_UINT64_C(0x0001000100010001);
    const quint64 notControl = four + lanes * (0x8000 - 0x20);
    const quint64 notQuote = (four ^ lanes * '"') + lanes * 0x7fff;
    const quint64 notBackslash = (four ^ lanes * '\\') + lanes * 0x7fff;
    return (four & lanes * 0xff80) == 0 && (notControl & notQuote & notBackslash & lanes * 0x8000) == lanes * 0x8000;
}

/// The character after the backslash of a short escape; 0 when there is none.
char shortEscape(ushort character)
{
    switch (character) {
    case '"':
    case '\\':
        return char(character);
    case '\b':
        return 'b';
    case '\f':
        return 'f';
    case '\n':
        return 'n';
    case '\r':
        return 'r';
    case '\t':
        return 't';
    default:
        return 0;
    }
}

/// The fast way for numbers of at most four decimals and fifteen digits, as nearly all of a terminal's are: their
/// decimal form is the shortest one, so that no search for it is needed. Returns null when the number has more digits.
char *writePrice(double number, char *out)
{
    constexpr double scale = 10000;
    const double scaled = std::abs(number) * scale + 0.5;
    if (!(scaled < 1e15))
        return nullptr;
    const auto digits = qint64(scaled);
    if (double(digits) / scale != std::abs(number))
        return nullptr;
    if (number < 0)
        *out++ = '-';
    out = std::to_chars(out, out + 16, digits / qint64(scale)).ptr;
    *out++ = '.';
    for (int rest = int(digits % qint64(scale)), place = 1000; rest != 0; rest %= place, place /= 10)
        *out++ = char('0' + rest / place);
    return out;
}

/// Writes a finite number in the fewest digits that are read back as the same double, with an exponent where Qt writes
/// one. Not for small whole numbers. Needs room for 32 characters; returns the end.
char *writeShortest(double number, char *out)
{
    std::array<char, 32> scientific; // d.ddde+dd
    const char *const end =
        std::to_chars(scientific.begin(), scientific.end(), std::abs(number), std::chars_format::scientific).ptr;
    const char *const mark = std::find(scientific.cbegin(), end, 'e');
    int exponent = 0;
    std::from_chars(mark + 1 + (mark[1] == '+'), end, exponent);
    const int pointPlace = exponent + 1; // how many digits stand before the decimal point
    const int digitCount = std::max(1, int(mark - scientific.data()) - 1);

    if (number < 0)
        *out++ = '-';
    constexpr double endOfWholeNumbers = 18446744073709551616.0; // below it they are written out
    if (pointPlace <= -4 || (std::abs(number) >= endOfWholeNumbers && pointPlace > digitCount + 5))
        return std::copy(scientific.cbegin(), end, out);

    std::array<char, 17> digits;
    digits[0] = scientific[0];
    std::copy_n(scientific.data() + 2, digitCount - 1, digits.data() + 1);
    if (pointPlace <= 0) {
        *out++ = '0';
        *out++ = '.';
        out = std::fill_n(out, -pointPlace, '0');
        return std::copy_n(digits.data(), digitCount, out);
    }
    const int whole = std::min(pointPlace, digitCount);
    out = std::copy_n(digits.data(), whole, out);
    if (digitCount == whole)
        return std::fill_n(out, pointPlace - whole, '0');
    *out++ = '.';
    return std::copy_n(digits.data() + whole, digitCount - whole, out);
}

QString textByQt(const QVariant &value)
{
    return QString::fromUtf8(QJsonDocument::fromVariant(value).toJson(QJsonDocument::Compact));
}

} // namespace

QString compactJson(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::QVariantHash:
        return textByQt(value); // Qt converts some types differently in a hash that is the whole document
    case QMetaType::QVariantMap:
    case QMetaType::QVariantList:
    case QMetaType::QStringList: {
        JsonWriter json;
        json.value(value);
        return json.take();
    }
    default:
        return QString(); // the null document
    }
}

QString JsonWriter::take()
{
    if (m_heap.isNull())
        return QString(reinterpret_cast<const QChar *>(m_local), int(m_end - m_local));
    m_heap.resize(int(m_end - reinterpret_cast<const ushort *>(m_heap.constData())));
    m_heap.squeeze(); // the text may be kept, as those of a batch are
    return std::move(m_heap);
}

void JsonWriter::grow(int characters)
{
    const bool isLocal = m_heap.isNull();
    const ushort *const begin = isLocal ? m_local : reinterpret_cast<const ushort *>(m_heap.constData());
    const std::ptrdiff_t size = m_end - begin;
    const std::ptrdiff_t needed = size + characters;
    if (needed > maxCharacters)
        qBadAlloc();
    // A small text grows by a large factor, so that it is seldom copied; a large one wastes less memory.
    const int factor = size < (1 << 20) ? 4 : 2;
    m_heap.resize(int(std::clamp(factor * (m_limit - begin), needed, maxCharacters)));
    auto *const moved = reinterpret_cast<ushort *>(m_heap.data());
    if (isLocal)
        std::copy(begin, begin + size, moved);
    m_end = moved + size;
    m_limit = moved + m_heap.size();
}

void JsonWriter::json(const QString &written)
{
    std::memcpy(room(written.size()), written.constData(), size_t(written.size()) * sizeof(ushort));
    m_end += written.size();
}

void JsonWriter::ascii(const char *begin, const char *end)
{
    m_end = std::copy(begin, end, room(int(end - begin)));
}

void JsonWriter::string(const QString &text)
{
    const auto *from = reinterpret_cast<const ushort *>(text.constData());
    const ushort *const end = from + text.size();
    ushort *to = room(text.size() + 2);
    *to++ = '"';
    quint64 four = 0;
    for (; end - from >= 4; from += 4, to += 4) {
        std::memcpy(&four, from, sizeof four);
        if (!arePlain(four))
            break;
        std::memcpy(to, &four, sizeof four);
    }
    for (; from != end; ++from) {
        if (isPlain(*from)) {
            *to++ = *from;
        } else if (QChar::isHighSurrogate(*from) && from + 1 != end && QChar::isLowSurrogate(from[1])) {
            *to++ = *from++;
            *to++ = *from;
        } else {
            m_end = to;
            escape(*from);
            to = room(int(end - from)); // for the rest and the quote
        }
    }
    *to++ = '"';
    m_end = to;
}

void JsonWriter::escape(ushort character)
{
    static constexpr char hexDigits[] = "0123456789abcdef";
    if (const char letter = shortEscape(character)) {
        const char text[] = {'\\', letter};
        ascii(std::begin(text), std::end(text));
        return;
    }
    const char text[] = {'\\',
                         'u',
                         hexDigits[character >> 12],
                         hexDigits[character >> 8 & 0xf],
                         hexDigits[character >> 4 & 0xf],
                         hexDigits[character & 0xf]};
    ascii(std::begin(text), std::end(text));
}

void JsonWriter::value(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::QString:
        return string(held<QString>(value));
    case QMetaType::Double:
        return number(held<double>(value));
    case QMetaType::Int:
        return integer(held<int>(value));
    case QMetaType::LongLong:
        return integer(held<qint64>(value));
    case QMetaType::UInt:
        return integer(held<uint>(value));
    case QMetaType::Bool:
        return json(held<bool>(value) ? QStringLiteral("true") : QStringLiteral("false"));
    case QMetaType::UnknownType:
        return json(QStringLiteral("null"));
    case QMetaType::QVariantMap:
        return object(held<QVariantMap>(value));
    case QMetaType::QVariantList:
        return array(held<QVariantList>(value), [this](const QVariant &element) { this->value(element); });
    case QMetaType::QStringList:
        return array(held<QStringList>(value), [this](const QString &element) { string(element); });
    default:
        return valueByQt(value);
    }
}

void JsonWriter::valueByQt(const QVariant &value)
{
    // Qt writes documents only: the brackets of this one are cut off.
    const QString list = textByQt(QVariantList{value});
    json(list.mid(1, list.size() - 2));
}

void JsonWriter::object(const QVariantMap &map)
{
    punctuation('{');
    bool isFirst = true;
    for (auto it = map.cbegin(), end = map.cend(); it != end;) {
        const auto member = it++;
        // Of members with the same key, which a multi-map has, the last counts. The sizes are compared first because
        // nearly all differ there.
        if (it != end && it.key().size() == member.key().size() && it.key() == member.key())
            continue;
        if (!isFirst)
            punctuation(',');
        isFirst = false;
        key(member.key());
        value(member.value());
    }
    punctuation('}');
}

void JsonWriter::integer(qint64 number)
{
    if (number < -maxExactInteger || number > maxExactInteger)
        return this->number(double(number)); // meant: JSON knows no integers, and pages read doubles
    std::array<char, 20> digits;
    ascii(digits.data(), std::to_chars(digits.begin(), digits.end(), number).ptr);
}

void JsonWriter::number(double number)
{
    if (!std::isfinite(number))
        return json(QStringLiteral("null"));
    if (std::abs(number) <= double(maxExactInteger) && double(qint64(number)) == number)
        return integer(qint64(number)); // -0.0 too: its sign is not written

    std::array<char, 32> text;
    char *end = writePrice(number, text.data());
    if (!end)
        end = writeShortest(number, text.data());
    ascii(text.data(), end);
}
