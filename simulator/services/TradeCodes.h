#pragma once

#include "HostApi.h"
#include "books/Orders.h"

#include <QString>
#include <QVector>

#include <optional>

namespace sim {

/// The codes of one enumeration in records and requests, and the words that tables show for them. docs/vocabulary.md
/// lists them.
template <typename Value>
class CodeTable {
public:
    struct Row {
        Value value;
        QString code;
        QString words;
    };

    explicit CodeTable(const QVector<Row> &rows) : m_rows(rows) {}

    /// The code of the value; every value has a row.
    QString code(Value value) const
    {
        return find([&](const Row &row) { return row.value == value; })->code;
    }

    std::optional<Value> value(const QString &code) const
    {
        const Row *row = find([&](const Row &candidate) { return candidate.code == code; });
        return row ? std::optional<Value>(row->value) : std::nullopt;
    }

    /// The words of the code; an unknown code is returned unchanged.
    QString words(const QString &code) const
    {
        const Row *row = find([&](const Row &candidate) { return candidate.code == code; });
        return row ? row->words : code;
    }

private:
    template <typename Test>
    const Row *find(Test test) const
    {
        for (const Row &row : m_rows) {
            if (test(row))
                return &row;
        }
        return nullptr;
    }

    QVector<Row> m_rows;
};

VARNEL_HOST_API const CodeTable<Side> &sideCodes();
VARNEL_HOST_API const CodeTable<OrderStatus> &orderStatusCodes();
VARNEL_HOST_API const CodeTable<PriceType> &priceTypeCodes();

} // namespace sim
