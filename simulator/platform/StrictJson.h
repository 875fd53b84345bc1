#pragma once

#include <QJsonObject>
#include <QJsonValue>
#include <QSet>
#include <QString>
#include <QVector>

#include <stdexcept>

namespace sim {

/// A problem in a JSON text and its place. Only the scenario reader throws and catches it.
class JsonError : public std::exception {
public:
    JsonError(const QString &path, const QString &problem);

    const char *what() const noexcept override { return m_text.constData(); }
    QString message() const { return QString::fromUtf8(m_text); }

private:
    QByteArray m_text;
};

/// One object of a JSON text, read strictly: every key must be present, known and of the right type.
class JsonNode {
public:
    JsonNode(const QString &path, const QJsonValue &value);

    QString text(const QString &key); ///< not empty
    double number(const QString &key);
    qint64 wholeNumber(const QString &key, qint64 min, qint64 max);
    QStringList texts(const QString &key);         ///< at least one, none empty
    QVector<JsonNode> objects(const QString &key); ///< at least one
    QVector<JsonNode> objectsIfAny(const QString &key);

    /// To be called after the last key was read: a key that was not read is an error, most likely a typing mistake.
    void finish() const;

    /// Throws a JsonError about the value under the key.
    [[noreturn]] void fail(const QString &key, const QString &problem) const;

private:
    QJsonValue take(const QString &key, QJsonValue::Type type, const char *typeName);
    QString pathOf(const QString &key) const;

    QString m_path;
    QJsonObject m_object;
    QSet<QString> m_taken;
};

} // namespace sim
