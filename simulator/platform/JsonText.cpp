#include "platform/JsonText.h"

#include <QVector>

#include <rapidjson/error/en.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <cstring>

namespace sim {

namespace {

constexpr size_t kDeepest = 100; // arrays and objects in each other; a scenario needs six

const char kByteOrderMark[] = "\xef\xbb\xbf"; // some editors begin every file with it

/// Builds the values from the events of the reader. False ends the reading.
class Builder {
public:
    Builder(const QByteArray &text, const rapidjson::MemoryStream &stream, JsonValue &root)
        : m_text(text), m_stream(stream), m_root(root), m_end(int(stream.Tell()))
    {
    }

    bool Null()
    {
        add(JsonValue::Null);
        return true;
    }
    bool Bool(bool isTrue)
    {
        add(JsonValue::Bool).isTrue = isTrue;
        return true;
    }
    bool RawNumber(const char *text, rapidjson::SizeType length, bool)
    {
        // Qt reads it: for a zero of many digits RapidJSON 1.1 shifts by what is no number of bits.
        add(JsonValue::Number).number = QByteArray(text, int(length)).toDouble();
        return true;
    }
    // The reader is not told to send these.
    bool Int(int) { return false; }
    bool Uint(unsigned) { return false; }
    bool Int64(int64_t) { return false; }
    bool Uint64(uint64_t) { return false; }
    bool Double(double) { return false; }
    bool String(const char *text, rapidjson::SizeType length, bool)
    {
        add(JsonValue::Text).text = QString::fromUtf8(text, int(length));
        return true;
    }
    bool Key(const char *text, rapidjson::SizeType length, bool)
    {
        m_keyOffset = begin();
        m_key = QString::fromUtf8(text, int(length));
        return true;
    }
    bool StartArray() { return open(JsonValue::Array); }
    bool StartObject() { return open(JsonValue::Object); }
    bool EndArray(rapidjson::SizeType) { return close(); }
    bool EndObject(rapidjson::SizeType) { return close(); }

private:
    /// Where the current token begins. The stream stands behind it.
    int begin()
    {
        int begin = m_end;
        while (std::strchr(" \t\r\n,:", m_text[begin]))
            ++begin;
        m_end = int(m_stream.Tell());
        return begin;
    }

    JsonValue &add(JsonValue::Type type)
    {
        JsonValue *value = &m_root;
        if (!m_open.empty()) {
            m_open.back()->items.emplace_back();
            value = &m_open.back()->items.back();
        }
        value->type = type;
        value->offset = begin();
        value->key = m_key;
        value->keyOffset = m_keyOffset;
        return *value;
    }

    bool open(JsonValue::Type type)
    {
        // Only closed values move when another is added, so the pointers stay good.
        m_open.push_back(&add(type));
        return m_open.size() <= kDeepest;
    }

    bool close()
    {
        begin();
        m_open.pop_back();
        return true;
    }

    const QByteArray &m_text;
    const rapidjson::MemoryStream &m_stream;
    JsonValue &m_root;
    std::vector<JsonValue *> m_open; ///< the arrays and objects around the current token
    int m_end;                       ///< of the token before
    QString m_key;
    int m_keyOffset = 0;
};

} // namespace

JsonSyntaxError parseJson(const QByteArray &text, JsonValue &root)
{
    rapidjson::MemoryStream stream(text.constData(), size_t(text.size()));
    if (text.startsWith(kByteOrderMark)) {
        while (stream.Tell() < std::strlen(kByteOrderMark))
            stream.Take();
    }
    rapidjson::Reader reader;
    Builder builder(text, stream, root);
    constexpr unsigned kFlags = rapidjson::kParseNumbersAsStringsFlag | rapidjson::kParseValidateEncodingFlag;
    const rapidjson::ParseResult result = reader.Parse<kFlags>(stream, builder);
    if (!result.IsError())
        return {};
    const bool tooDeep = result.Code() == rapidjson::kParseErrorTermination;
    return {int(result.Offset()), tooDeep ? QStringLiteral("Too many arrays and objects in each other.")
                                          : QString::fromLatin1(rapidjson::GetParseError_En(result.Code()))};
}

QString placeOf(const QByteArray &text, int offset)
{
    const QByteArray before = text.left(offset);
    const int lineBegin = before.lastIndexOf('\n') + 1;
    QByteArray line = before.mid(lineBegin);
    if (lineBegin == 0 && line.startsWith(kByteOrderMark))
        line.remove(0, int(std::strlen(kByteOrderMark)));
    return QStringLiteral("%1:%2").arg(before.count('\n') + 1).arg(QString::fromUtf8(line).toUcs4().size() + 1);
}

} // namespace sim
