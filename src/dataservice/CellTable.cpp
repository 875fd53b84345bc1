#include "dataservice/CellTable.h"

#include "common/JsonWriter.h"
#include "common/WebConstants.h"

using namespace WebConstants;

namespace {

const QVariant nothing;

/// The two roles of one cell in the line data; null where the generator filled nothing.
struct Cell {
    Cell(const LineData &lineData, int index)
    {
        const auto found = lineData.constFind(index);
        if (found == lineData.cend())
            return;
        const auto findRole = [&found](const QString &role) -> const QVariant & {
            const auto value = found->constFind(role);
            return value == found->cend() ? nothing : *value;
        };
        display = &findRole(LineDataRole::display);
        user = &findRole(LineDataRole::user);
    }

    const QVariant *display = &nothing;
    const QVariant *user = &nothing;
};

} // namespace

CellTable::CellTable(const QStringList &columns, const QMap<QString, QString> &pageKeys)
{
    QMap<QString, int> indexOfKey;
    for (int i = 0; i < columns.size(); ++i)
        indexOfKey.insert(pageKeys.value(columns.at(i)), i);

    for (auto it = indexOfKey.cbegin(); it != indexOfKey.cend(); ++it) {
        JsonWriter begin;
        if (!m_columns.isEmpty())
            begin.punctuation(',');
        begin.key(it.key());
        begin.punctuation('{');
        begin.key(Key::displayRole);
        m_columns.append({it.value(), it.key(), begin.take()});
    }
    JsonWriter between;
    between.punctuation(',');
    between.key(Key::userRole);
    m_between = between.take();
}

QVariantMap CellTable::toMap(const LineData &lineData) const
{
    QVariantMap record;
    for (const Column &column : m_columns) {
        const Cell cell(lineData, column.index);
        record.insert(column.key, QVariantMap{{Key::displayRole, *cell.display}, {Key::userRole, *cell.user}});
    }
    return record;
}

void CellTable::write(JsonWriter &json, const LineData &lineData) const
{
    json.punctuation('{');
    for (const Column &column : m_columns) {
        const Cell cell(lineData, column.index);
        json.json(column.begin);
        json.value(*cell.display);
        json.json(m_between);
        json.value(*cell.user);
        json.punctuation('}');
    }
    json.punctuation('}');
}
