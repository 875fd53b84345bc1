#pragma once

#include <QMap>
#include <QStringList>
#include <QVariantMap>
#include <QVector>

class JsonWriter;

/// Line data of the host's report generators: for each column, by its index, a map of roles.
using LineData = QMap<int, QVariantMap>;

/// How the line data of an order or execution becomes a page record: each page key with the pair of its cell's two
/// roles, null for what the generator did not fill. As a map, or at once as the JSON that the map would give.
/// Constant after construction.
class CellTable {
public:
    CellTable(const QStringList &columns, const QMap<QString, QString> &pageKeys);

    QVariantMap toMap(const LineData &lineData) const;
    void write(JsonWriter &json, const LineData &lineData) const;

private:
    struct Column {
        int index; ///< in the line data
        QString key;
        QString begin; ///< the JSON from the end of the cell before to the display role
    };
    QVector<Column> m_columns; ///< in the order of their page keys, which is that of JSON objects
    QString m_between;         ///< the JSON between the two roles
};
