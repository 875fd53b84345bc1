#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

namespace sim {

/// One value of a JSON text, and where it stands in the text. A plain value.
struct JsonValue {
    enum Type { Null, Bool, Number, Text, Array, Object };

    Type type = Null;
    int offset = 0; ///< of its first byte
    bool isTrue = false;
    double number = 0;
    QString text;
    std::vector<JsonValue> items; ///< of an array or an object, in the order of the text

    // Of a member of an object
    QString key;
    int keyOffset = 0;
};

/// Why a text is not JSON, and where. A plain value.
struct JsonSyntaxError {
    int offset = 0;
    QString problem; ///< empty when the text is JSON
};

/// Reads a JSON text in UTF-8. QJsonDocument would forget where the values stand, and all but one of the members that
/// have the same key.
JsonSyntaxError parseJson(const QByteArray &text, JsonValue &root);

/// The place of a byte as editors count it, from 1: "LINE:COLUMN". A character counts as one column.
QString placeOf(const QByteArray &text, int offset);

} // namespace sim
