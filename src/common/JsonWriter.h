#pragma once

#include <QString>
#include <QVariantMap>

#include <iterator>

/// Compact JSON of a map, a hash, a list or a string list; the empty text for any other value. The text is always that
/// of QString::fromUtf8(QJsonDocument::fromVariant(value).toJson(QJsonDocument::Compact)).
QString compactJson(const QVariant &value);

/// Writes compact JSON straight into a text, without the value tree and the UTF-8 that QJsonDocument goes through. Each
/// value comes out as QJsonDocument writes it.
/// Made on the stack for one text, on any thread.
class JsonWriter {
public:
    JsonWriter() {} // the room on the stack is left as it is

    /// Any value, with all that is in it. One that JSON cannot express is null.
    void value(const QVariant &value);

    /// A text, quoted and escaped.
    void string(const QString &text);

    /// The key of a member, quoted and escaped, and its colon.
    void key(const QString &key)
    {
        string(key);
        punctuation(':');
    }

    /// A brace or a comma that the caller places.
    void punctuation(char character)
    {
        *room(1) = uchar(character);
        ++m_end;
    }

    /// JSON that was written before, as it stands.
    void json(const QString &written);

    /// An array; writeElement writes each element of the container.
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

    /// What has been written. The writer is done then.
    QString take();

private:
    Q_DISABLE_COPY_MOVE(JsonWriter)

    /// Where the next characters go; there is room for so many.
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

    ushort m_local[2048];    ///< enough for most replies, a quote or one order: they cost no allocation but the result
    QString m_heap;          ///< holds the text once it has outgrown m_local
    ushort *m_end = m_local; ///< behind what has been written
    ushort *m_limit = m_local + std::size(m_local); ///< behind what there is room for
};
