#pragma once

#include <QMap>
#include <QStringList>
#include <QVariantMap>
#include <QVector>

class JsonWriter;

/// Line data of the host's report generators: for each column, by its index, a map of roles.
using LineData = QMap<int, QVariantMap>;

/// Makes page records from the line data of orders or executions: each page key gets the two roles of its cell, null
/// where the generator filled nothing. The record comes as a map, or directly as the JSON of that map.
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
        QString begin; ///< the JSON between the previous cell and this one's display text
    };
    QVector<Column> m_columns; ///< in the order of their page keys, which is that of JSON objects
    QString m_between;         ///< the JSON between the two roles of a cell
};
