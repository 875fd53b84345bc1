#include "BusinessDataInterface.h"

#include "Tessar_Fields.h"
#include "services/TradeRecords.h"
#include "terminal/Terminal.h"
#include "traffic/Log.h"

#include <QSet>

#include <algorithm>
#include <vector>

using namespace sim;

namespace {

/// Selects the records of one kind that meet all conditions of a query.
template <typename Source>
class Selection {
public:
    Selection(const RecordFields<Source> &fields, const QVariantMap &conditions)
    {
        for (auto condition = conditions.cbegin(); condition != conditions.cend(); ++condition) {
            const auto field = fields.constFind(condition.key());
            if (field == fields.cend()) {
                m_isEmpty = true; // no record has that field, so none meets the condition
                return;
            }
            const QStringList accepted = condition.value().toStringList();
            m_tests.push_back({*field, QSet<QString>(accepted.begin(), accepted.end())});
        }
    }

    /// The numbers of the matching records, newest first: at most count from row offset on, or all when count is not
    /// positive. total: the number of all matches. at(number): the source of a record; numbers are in the order of
    /// time.
    template <typename At>
    std::vector<int> numbers(int size, At at, int &total, int offset, int count) const
    {
        total = 0;
        std::vector<int> page;
        if (m_tests.empty() && !m_isEmpty) { // all match: only the records of the page are looked at
            total = size;
            const int first = qBound(0, offset, size);
            const int last = count > 0 ? first + qMin(count, size - first) : size;
            for (int row = first; row < last; ++row)
                page.push_back(size - 1 - row);
            return page;
        }
        for (int number = m_isEmpty ? -1 : size - 1; number >= 0; --number) {
            if (!includes(at(number)))
                continue;
            if (total >= offset && (count <= 0 || int(page.size()) < count))
                page.push_back(number);
            ++total;
        }
        return page;
    }

private:
    struct Test {
        std::function<QVariant(const Source &)> read;
        QSet<QString> accepted;
    };

    bool includes(const Source &source) const
    {
        return std::all_of(m_tests.begin(), m_tests.end(),
                           [&](const Test &test) { return test.accepted.contains(test.read(source).toString()); });
    }

    std::vector<Test> m_tests;
    bool m_isEmpty = false;
};

} // namespace

// The lists for sorting and for the choice of fields are unnamed: the library always leaves them empty.
// The orders are copied from the books and the records made of the copies, so that trading does not wait for that.

QList<QVariantMap> BusinessDataInterface::GetOrderListByCustomKey(const QVariantMap &keys, int &total, int offset,
                                                                  int count, QList<QString>, const QStringList &)
{
    traffic::log().hostCall("BusinessDataInterface::GetOrderListByCustomKey");
    const Terminal &terminal = Terminal::instance();
    const Accounts &accounts = terminal.accounts();
    const Selection<OrderSource> selection(orderFields(), keys);
    std::vector<Order> page;
    {
        const TradingDesk::Reader books = terminal.desk().read();
        const std::vector<Order> &orders = books->orders();
        const auto at = [&](int number) { return OrderSource{accounts, orders[number]}; };
        const std::vector<int> numbers = selection.numbers(int(orders.size()), at, total, offset, count);
        page.reserve(numbers.size());
        for (const int number : numbers)
            page.push_back(orders[number]);
    }
    QList<QVariantMap> records;
    for (const Order &order : page)
        records.append(recordOf(orderFields(), OrderSource{accounts, order}));
    return records;
}

QList<QVariantMap> BusinessDataInterface::GetExecutionListByCustomKey(const QVariantMap &keys, int &total, int offset,
                                                                      int count, const QStringList &)
{
    traffic::log().hostCall("BusinessDataInterface::GetExecutionListByCustomKey");
    const Terminal &terminal = Terminal::instance();
    const Accounts &accounts = terminal.accounts();
    const Selection<ExecutionSource> selection(executionFields(), keys);
    std::vector<std::pair<Order, Execution>> page;
    {
        const TradingDesk::Reader books = terminal.desk().read();
        const std::vector<Execution> &executions = books->executions();
        const auto at = [&](int number) {
            return ExecutionSource{accounts, books->order(executions[number].order), executions[number]};
        };
        const std::vector<int> numbers = selection.numbers(int(executions.size()), at, total, offset, count);
        page.reserve(numbers.size());
        for (const int number : numbers)
            page.emplace_back(at(number).order, executions[number]);
    }
    QList<QVariantMap> records;
    for (const auto &[order, execution] : page)
        records.append(recordOf(executionFields(), ExecutionSource{accounts, order, execution}));
    return records;
}

QMap<QString, QVariant> BusinessDataInterface::GetOrderDetailByOrderID(const QString &orderId)
{
    traffic::log().hostCall("BusinessDataInterface::GetOrderDetailByOrderID");
    const Terminal &terminal = Terminal::instance();
    const std::optional<Order> order = terminal.desk().order(orderId);
    return order ? recordOf(orderFields(), OrderSource{terminal.accounts(), *order}) : QVariantMap();
}

QList<QVariantMap> BusinessDataInterface::GetPositionListByAccount(const QVariantMap &accountDetails, const QString &,
                                                                   const QString &symbol, const QString &,
                                                                   const QString &, const QString &, const QString &)
{
    traffic::log().hostCall("BusinessDataInterface::GetPositionListByAccount");
    const Terminal &terminal = Terminal::instance();
    const QString tradingAccount = accountDetails.value(Tessar_Fields::UserAccount::tradingAccount).toString();
    const FundAccount *fund = terminal.accounts().fundAccountOf(tradingAccount);
    const std::optional<Ledger> ledger = terminal.desk().ledger(tradingAccount);
    if (!fund || !ledger)
        return {};
    QList<QVariantMap> list;
    for (const Position &position : ledger->positions()) {
        if (position.qty() > 0 && (symbol.isEmpty() || position.instrument->symbol == symbol))
            list.append(recordOf(positionFields(), PositionSource{*fund, tradingAccount, position}));
    }
    return list;
}
