#include "platform/StrictJson.h"

#include <QLocale>

namespace sim {

namespace {

/// Keys and values of the text can hold line ends and other control characters: a mistake shows them as JSON escapes,
/// so that it stays one line.
QString onOneLine(const QString &mistake)
{
    QString shown;
    for (const QChar character : mistake) {
        const QChar::Category category = character.category();
        if (category == QChar::Other_Control || category == QChar::Separator_Line ||
            category == QChar::Separator_Paragraph)
            shown += QStringLiteral("\\u%1").arg(character.unicode(), 4, 16, QLatin1Char('0'));
        else
            shown += character;
    }
    return shown;
}

} // namespace

void JsonMistakes::add(int offset, const QString &path, const QString &problem)
{
    m_mistakes.insert(offset, path.isEmpty() ? problem : path + QStringLiteral(": ") + problem);
}

QStringList JsonMistakes::lines(const QString &fileName, const QByteArray &text) const
{
    QStringList lines;
    for (const int offset : m_mistakes.uniqueKeys()) {
        const QString place = fileName + QLatin1Char(':') + placeOf(text, offset) + QStringLiteral(": ");
        QStringList here;
        for (const QString &mistake : m_mistakes.values(offset))
            here.prepend(place + onOneLine(mistake)); // QMultiMap has the newest first
        lines += here;
    }
    return lines;
}

JsonNode::JsonNode(JsonMistakes &mistakes, const QString &path, const JsonValue &value)
    : m_mistakes(&mistakes), m_path(path), m_object(&value)
{
}

QString JsonNode::pathOf(const QString &key) const
{
    return m_path.isEmpty() ? key : m_path + QLatin1Char('.') + key;
}

const JsonValue *JsonNode::find(const QString &key) const
{
    for (const JsonValue &member : m_object->items) {
        if (member.key == key)
            return &member;
    }
    return nullptr;
}

bool JsonNode::has(const QString &key) const
{
    return find(key) != nullptr;
}

QStringList JsonNode::keys() const
{
    QStringList keys;
    for (const JsonValue &member : m_object->items) {
        if (!keys.contains(member.key))
            keys.append(member.key);
    }
    return keys;
}

void JsonNode::fail(const QString &key, const QString &problem) const
{
    const JsonValue *value = find(key);
    m_mistakes->add(value ? value->offset : m_object->offset, pathOf(key), problem);
}

const JsonValue *JsonNode::take(const QString &key, JsonValue::Type type, const char *typeName)
{
    m_taken.insert(key);
    const JsonValue *value = find(key);
    if (value && value->type == type)
        return value;
    fail(key, value ? QStringLiteral("must be ") + QLatin1String(typeName) : QStringLiteral("is missing"));
    return nullptr;
}

QString JsonNode::text(const QString &key)
{
    const JsonValue *value = take(key, JsonValue::Text, "a text");
    if (value && value->text.isEmpty())
        fail(key, QStringLiteral("must not be empty"));
    return value ? value->text : QString();
}

bool JsonNode::boolean(const QString &key)
{
    const JsonValue *value = take(key, JsonValue::Bool, "true or false");
    return value && value->isTrue;
}

std::optional<double> JsonNode::number(const QString &key)
{
    const JsonValue *value = take(key, JsonValue::Number, "a number");
    return value ? std::make_optional(value->number) : std::nullopt;
}

std::optional<double> JsonNode::number(const QString &key, double min, double max)
{
    const std::optional<double> value = number(key);
    if (!value || (*value >= min && *value <= max))
        return value;
    const auto plain = [](double number) { return QString::number(number, 'f', QLocale::FloatingPointShortest); };
    fail(key, QStringLiteral("must be a number from %1 to %2").arg(plain(min), plain(max)));
    return std::nullopt;
}

std::optional<qint64> JsonNode::wholeNumber(const QString &key, qint64 min, qint64 max)
{
    const std::optional<double> value = number(key);
    if (!value)
        return std::nullopt;
    if (*value >= double(min) && *value <= double(max) && *value == double(qint64(*value)))
        return qint64(*value);
    fail(key, QStringLiteral("must be a whole number from %1 to %2").arg(min).arg(max));
    return std::nullopt;
}

QStringList JsonNode::texts(const QString &key)
{
    const JsonValue *array = find(key);
    if (array && array->type == JsonValue::Array && array->items.empty())
        fail(key, QStringLiteral("must not be empty"));
    return textsIfAny(key);
}

QStringList JsonNode::textsIfAny(const QString &key)
{
    QStringList texts;
    const JsonValue *array = take(key, JsonValue::Array, "an array");
    if (!array)
        return texts;
    for (const JsonValue &item : array->items) {
        if (item.type == JsonValue::Text && !item.text.isEmpty())
            texts.append(item.text);
        else
            m_mistakes->add(item.offset, pathOf(key), QStringLiteral("must hold texts that are not empty"));
    }
    return texts;
}

std::optional<JsonNode> JsonNode::object(const QString &key)
{
    const JsonValue *value = take(key, JsonValue::Object, "an object");
    return value ? std::make_optional(JsonNode(*m_mistakes, pathOf(key), *value)) : std::nullopt;
}

std::vector<JsonNode> JsonNode::objects(const QString &key)
{
    const JsonValue *array = find(key);
    if (array && array->type == JsonValue::Array && array->items.empty())
        fail(key, QStringLiteral("must not be empty"));
    return objectsIfAny(key);
}

std::vector<JsonNode> JsonNode::objectsIfAny(const QString &key)
{
    std::vector<JsonNode> nodes;
    const JsonValue *array = take(key, JsonValue::Array, "an array");
    if (!array)
        return nodes;
    int index = 0;
    for (const JsonValue &item : array->items) {
        const QString path = QStringLiteral("%1[%2]").arg(pathOf(key)).arg(index++);
        if (item.type == JsonValue::Object)
            nodes.emplace_back(*m_mistakes, path, item);
        else
            m_mistakes->add(item.offset, path, QStringLiteral("must be an object"));
    }
    return nodes;
}

void JsonNode::finish() const
{
    QSet<QString> seen;
    for (const JsonValue &member : m_object->items) {
        if (seen.contains(member.key))
            m_mistakes->add(member.keyOffset, pathOf(member.key), QStringLiteral("is there twice"));
        else if (!m_taken.contains(member.key))
            m_mistakes->add(member.keyOffset, pathOf(member.key), QStringLiteral("is not a known key"));
        seen.insert(member.key);
    }
}

} // namespace sim
