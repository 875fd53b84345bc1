#pragma once

#include <QString>
#include <QVariantMap>

#include <iterator>

/// Compact JSON of a map, a hash, a list or a string list; the empty text for any other value. The text is always that
/// of QString::fromUtf8(QJsonDocument::fromVariant(value).toJson(QJsonDocument::Compact)).
QString compactJson(const QVariant &value);

/// Writes compact JSON directly into a text: QJsonDocument would make a tree of values and UTF-8 first. The characters
/// are those that QJsonDocument writes.
/// Use one writer, on the stack, for one text. Any thread.
class JsonWriter {
public:
    JsonWriter() {} // m_local stays uninitialised: filling it would cost more than a short reply

    /// Writes a value and everything in it. A value that JSON cannot express is written as null.
    void value(const QVariant &value);

    /// Writes a text, quoted and escaped.
    void string(const QString &text);

    /// Writes the key of a member, quoted and escaped, and its colon.
    void key(const QString &key)
    {
        string(key);
        punctuation(':');
    }

    /// Writes one brace, bracket or comma.
    void punctuation(char character)
    {
        *room(1) = uchar(character);
        ++m_end;
    }

    /// Appends JSON that was written before, unchanged.
    void json(const QString &written);

    /// Writes an array; writeElement writes each element of the container.
    template <typename Container, typename WriteElement>
    void array(const Container &container, WriteElement writeElement)
    {
        punctuation('[');
        bool isFirst = true;
        for (const auto &element : container) {
            if (!isFirst)
                punctuation(',');
            isFirst = false;
            writeElement(element);
        }
        punctuation(']');
    }

    /// Returns the text. The writer cannot be used after that.
    QString take();

private:
    Q_DISABLE_COPY_MOVE(JsonWriter)

    /// Makes room for so many characters, and returns where they go.
    ushort *room(int characters)
    {
        if (m_limit - m_end < characters)
            grow(characters);
        return m_end;
    }

    void grow(int characters);
    void ascii(const char *begin, const char *end);
    void escape(ushort character);
    void object(const QVariantMap &map);
    void integer(qint64 number);
    void number(double number);
    void valueByQt(const QVariant &value);

    ushort m_local[2048];    ///< holds most replies, so that they allocate nothing but the result
    QString m_heap;          ///< holds the text once it has outgrown m_local
    ushort *m_end = m_local; ///< one past the last character
    ushort *m_limit = m_local + std::size(m_local); ///< one past the last place for a character
};
