#include "BusinessDataInterface.h"

#include "Tessar_Fields.h"
#include "platform/Terminal.h"
#include "services/TradeRecords.h"

#include <QSet>

#include <algorithm>
#include <vector>

using namespace sim;

namespace {

/// The records that meet every condition, newest first: those from row offset on, as many as count says or, when it
/// says none, all.
/// at: the source of the record of a number, numbers being given in the order of time.
template <typename Source, typename At>
QList<QVariantMap> select(const RecordFields<Source> &fields, const QVariantMap &conditions, int size, At at,
                          int &total, int offset, int count)
{
    struct Condition {
        std::function<QVariant(const Source &)> read;
        QSet<QString> accepted;
    };
    total = 0;
    std::vector<Condition> tests;
    for (auto condition = conditions.cbegin(); condition != conditions.cend(); ++condition) {
        const auto field = fields.constFind(condition.key());
        if (field == fields.cend())
            return {}; // no record has that field, so none has one of its values
        const QStringList accepted = condition.value().toStringList();
        tests.push_back({*field, QSet<QString>(accepted.begin(), accepted.end())});
    }

    QList<QVariantMap> page;
    for (int number = size - 1; number >= 0; --number) {
        const Source source = at(number);
        const bool meets = std::all_of(tests.begin(), tests.end(), [&](const Condition &test) {
            return test.accepted.contains(test.read(source).toString());
        });
        if (!meets)
            continue;
        if (total >= offset && (count <= 0 || page.size() < count))
            page.append(recordOf(fields, source));
        ++total;
    }
    return page;
}

} // namespace

// The lists that the library leaves empty (sorting, choice of fields) have no meaning here: they are left unnamed.

QList<QVariantMap> BusinessDataInterface::GetOrderListByCustomKey(const QVariantMap &keys, int &total, int offset,
                                                                  int count, QList<QString>, const QStringList &)
{
    const Books &books = Terminal::instance().books();
    return select(
        orderFields(), keys, books.orders().size(),
        [&](int number) {
            return OrderSource{books, books.orders()[number]};
        },
        total, offset, count);
}

QList<QVariantMap> BusinessDataInterface::GetExecutionListByCustomKey(const QVariantMap &keys, int &total, int offset,
                                                                      int count, const QStringList &)
{
    const Books &books = Terminal::instance().books();
    return select(
        executionFields(), keys, books.executions().size(),
        [&](int number) {
            return ExecutionSource{books, books.executions()[number]};
        },
        total, offset, count);
}

QList<QVariantMap> BusinessDataInterface::GetPositionListByAccount(const QVariantMap &accountDetails, const QString &,
                                                                   const QString &symbol, const QString &,
                                                                   const QString &, const QString &, const QString &)
{
    const Books &books = Terminal::instance().books();
    const QString tradingAccount = accountDetails.value(Tessar_Fields::UserAccount::tradingAccount).toString();
    const FundAccount *fund = books.fundAccountOf(tradingAccount);
    if (!fund)
        return {};
    QList<QVariantMap> list;
    for (const Position &position : books.ledger(tradingAccount)->positions()) {
        if (position.qty() > 0 && (symbol.isEmpty() || position.instrument->symbol == symbol))
            list.append(recordOf(positionFields(), PositionSource{*fund, tradingAccount, position}));
    }
    return list;
}
