#pragma once

#include "platform/JsonText.h"

#include <QMap>
#include <QSet>
#include <QStringList>

#include <optional>
#include <vector>

namespace sim {

/// The mistakes in one JSON text. Nodes add to it while they are read.
class JsonMistakes {
public:
    void add(int offset, const QString &path, const QString &problem);
    bool isEmpty() const { return m_mistakes.isEmpty(); }

    /// One line for each, in the order of the text: "FILE:LINE:COLUMN: path: problem".
    QStringList lines(const QString &fileName, const QByteArray &text) const;

private:
    QMultiMap<int, QString> m_mistakes; ///< by offset
};

/// One object of a JSON text, read strictly: every key must be known and of the right type, and no key may stand there
/// twice. Each mistake is noted, and the reading goes on: what could not be read is empty or has its fallback.
/// The value and the mistakes must outlive the node.
class JsonNode {
public:
    /// value: an object.
    JsonNode(JsonMistakes &mistakes, const QString &path, const JsonValue &value);

    bool has(const QString &key) const;
    const QString &path() const { return m_path; }
    QStringList keys() const; ///< each once

    void skip(const QString &key) { m_taken.insert(key); } ///< of which another mistake is noted

    QString text(const QString &key); ///< not empty
    bool boolean(const QString &key);
    std::optional<double> number(const QString &key);
    std::optional<double> number(const QString &key, double min, double max);
    std::optional<qint64> wholeNumber(const QString &key, qint64 min, qint64 max);
    QStringList texts(const QString &key); ///< at least one, none empty
    QStringList textsIfAny(const QString &key);
    std::optional<JsonNode> object(const QString &key);
    std::vector<JsonNode> objects(const QString &key); ///< at least one
    std::vector<JsonNode> objectsIfAny(const QString &key);

    /// To be called after the last key was read: a key that was not read is a mistake, most likely of typing.
    void finish() const;

    /// Notes a mistake in the value under the key, or in the object when it has no such key.
    void fail(const QString &key, const QString &problem) const;

private:
    const JsonValue *find(const QString &key) const;
    const JsonValue *take(const QString &key, JsonValue::Type type, const char *typeName);
    QString pathOf(const QString &key) const;

    JsonMistakes *m_mistakes;
    QString m_path;
    const JsonValue *m_object;
    QSet<QString> m_taken;
};

} // namespace sim
