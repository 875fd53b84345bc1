#include "platform/StrictJson.h"

#include <QJsonArray>

namespace sim {

JsonError::JsonError(const QString &path, const QString &problem)
    : m_text((path.isEmpty() ? problem : path + QStringLiteral(": ") + problem).toUtf8())
{
}

JsonNode::JsonNode(const QString &path, const QJsonValue &value) : m_path(path), m_object(value.toObject())
{
    if (!value.isObject())
        throw JsonError(path, QStringLiteral("must be an object"));
}

QString JsonNode::pathOf(const QString &key) const
{
    return m_path.isEmpty() ? key : m_path + QLatin1Char('.') + key;
}

void JsonNode::fail(const QString &key, const QString &problem) const
{
    throw JsonError(pathOf(key), problem);
}

QJsonValue JsonNode::take(const QString &key, QJsonValue::Type type, const char *typeName)
{
    m_taken.insert(key);
    const QJsonValue value = m_object.value(key);
    if (value.isUndefined())
        fail(key, QStringLiteral("is missing"));
    if (value.type() != type)
        fail(key, QStringLiteral("must be ") + QLatin1String(typeName));
    return value;
}

QString JsonNode::text(const QString &key)
{
    const QString text = take(key, QJsonValue::String, "a text").toString();
    if (text.isEmpty())
        fail(key, QStringLiteral("must not be empty"));
    return text;
}

double JsonNode::number(const QString &key)
{
    return take(key, QJsonValue::Double, "a number").toDouble();
}

qint64 JsonNode::wholeNumber(const QString &key, qint64 min, qint64 max)
{
    const double value = number(key);
    if (!(value >= double(min) && value <= double(max)) || value != double(qint64(value)))
        fail(key, QStringLiteral("must be a whole number from %1 to %2").arg(min).arg(max));
    return qint64(value);
}

QStringList JsonNode::texts(const QString &key)
{
    const QJsonArray array = take(key, QJsonValue::Array, "an array").toArray();
    if (array.isEmpty())
        fail(key, QStringLiteral("must not be empty"));
    QStringList texts;
    for (const QJsonValue &value : array) {
        if (value.toString().isEmpty())
            fail(key, QStringLiteral("must hold texts that are not empty"));
        texts.append(value.toString());
    }
    return texts;
}

QVector<JsonNode> JsonNode::objects(const QString &key)
{
    const QVector<JsonNode> nodes = objectsIfAny(key);
    if (nodes.isEmpty())
        fail(key, QStringLiteral("must not be empty"));
    return nodes;
}

QVector<JsonNode> JsonNode::objectsIfAny(const QString &key)
{
    const QJsonArray array = take(key, QJsonValue::Array, "an array").toArray();
    QVector<JsonNode> nodes;
    nodes.reserve(array.size());
    for (const QJsonValue &value : array)
        nodes.append(JsonNode(QStringLiteral("%1[%2]").arg(pathOf(key)).arg(nodes.size()), value));
    return nodes;
}

void JsonNode::finish() const
{
    for (auto key = m_object.constBegin(); key != m_object.constEnd(); ++key) {
        if (!m_taken.contains(key.key()))
            fail(key.key(), QStringLiteral("is not a known key"));
    }
}

} // namespace sim
