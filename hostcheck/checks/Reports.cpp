#include "hostcheck/checks/Records.h"
#include "hostcheck/checks/Tables.h"

#include "CommonQuotaHandler.h"
#include "Tessar_Fields.h"
#include "VarnelDealReportGen.h"
#include "VarnelEntrustReportGen.h"
#include "VarnelPositionReportGen.h"
#include "common/ReportColumns.h"

namespace HostCheck {

namespace {

using WebConstants::LineDataRole::display;
using WebConstants::LineDataRole::user;

using LineData = QMap<int, QVariantMap>;

/// One of the host's report generators, and what the library asks it for.
struct Generator {
    const char *name;
    QList<QVariantMap> (*records)(const KnownValues &known);
    void (*fill)(const QVariantMap &record, LineData &lineData, const QStringList &columns, ShowType showType);
    QStringList columns;
};

void fillEntrust(const QVariantMap &record, LineData &lineData, const QStringList &columns, ShowType showType)
{
    VarnelEntrustReportGen::fillLineData(record, lineData, columns, showType, false);
}

void fillDeal(const QVariantMap &record, LineData &lineData, const QStringList &columns, ShowType showType)
{
    VarnelDealReportGen::fillLineData(record, lineData, columns, showType, false);
}

void fillPosition(const QVariantMap &record, LineData &lineData, const QStringList &columns, ShowType showType)
{
    const QString symbol = record.value(Tessar_Fields::Security::symbol).toString();
    const QVariantMap quote = present(CommonQuotaHandler::instance()).GetQuotaSnapshot(symbol, 0);
    VarnelPositionReportGen::fillLineData(0, record, lineData, columns, showType, quote, QString(), false);
}

const Generator &entrust()
{
    static const Generator generator{"VarnelEntrustReportGen", [](const KnownValues &) { return someOrders().records; },
                                     fillEntrust, ReportColumns::entrust()};
    return generator;
}

const Generator &deal()
{
    static const Generator generator{"VarnelDealReportGen",
                                     [](const KnownValues &) { return someExecutions().records; }, fillDeal,
                                     ReportColumns::execution()};
    return generator;
}

const Generator &position()
{
    static const Generator generator{"VarnelPositionReportGen", somePositions, fillPosition, ReportColumns::position()};
    return generator;
}

LineData filled(const Generator &generator, const QVariantMap &record, const QStringList &columns,
                ShowType showType = PlainShowType)
{
    LineData lineData;
    generator.fill(record, lineData, columns, showType);
    return lineData;
}

QList<QVariantMap> recordsFor(const Generator &generator, const KnownValues &known)
{
    const QList<QVariantMap> records = generator.records(known);
    if (records.isEmpty())
        skip(QStringLiteral("the host has no record for %1").arg(QLatin1String(generator.name)));
    return records;
}

/// A column may be empty in one record. One that no record fills is unknown to the generator.
void expectColumns(const Generator &generator, const KnownValues &known)
{
    const QList<QVariantMap> records = recordsFor(generator, known);
    for (const ShowType showType : {PlainShowType, GroupedShowType}) {
        QStringList missing = generator.columns;
        for (const QVariantMap &record : records) {
            const LineData lineData = filled(generator, record, generator.columns, showType);
            for (int i = 0; i < generator.columns.size(); ++i) {
                if (lineData.value(i).contains(display) && lineData.value(i).contains(user))
                    missing.removeAll(generator.columns[i]);
            }
        }
        expect(missing.isEmpty(), "every column gets a display text under \"0\" and a value under \"256\"",
               QStringLiteral("none of %1 records fills %2 in show type %3")
                   .arg(records.size())
                   .arg(missing.join(QStringLiteral(", ")))
                   .arg(showType));
    }
}

void entrustColumns(const KnownValues &known)
{
    expectColumns(entrust(), known);
}

void dealColumns(const KnownValues &known)
{
    expectColumns(deal(), known);
}

void positionColumns(const KnownValues &known)
{
    expectColumns(position(), known);
}

/// Calls test for the first record of each generator that has one.
template <typename Test>
void forEachGenerator(const KnownValues &known, Test test)
{
    int tested = 0;
    for (const Generator *generator : {&entrust(), &deal(), &position()}) {
        const QList<QVariantMap> records = generator->records(known);
        if (records.isEmpty())
            continue;
        test(*generator, records.first());
        ++tested;
    }
    if (tested == 0)
        skip(QStringLiteral("the host has no order, execution or position"));
}

void columnsByPosition(const KnownValues &known)
{
    forEachGenerator(known, [](const Generator &generator, const QVariantMap &record) {
        if (&generator == &position())
            return; // its cells may change between two calls, with the quotes
        const LineData together = filled(generator, record, generator.columns);
        for (int i = 0; i < generator.columns.size(); ++i) {
            const QVariantMap alone = filled(generator, record, {generator.columns[i]}).value(0);
            expect(
                together.value(i) == alone, "lineData[i] is the cell of column i of those that are asked for",
                QStringLiteral("%1 fills %2 with %3 among the others, and with %4 alone")
                    .arg(QLatin1String(generator.name), generator.columns[i], shown(together.value(i)), shown(alone)));
        }
    });
}

void unknownColumns(const KnownValues &known)
{
    forEachGenerator(known, [](const Generator &generator, const QVariantMap &record) {
        for (const QString &column : generator.columns) {
            const bool alone = filled(generator, record, {column}).contains(0);
            const bool behindUnknown = filled(generator, record, {kUnknown, column}).contains(1);
            expect(alone == behindUnknown, "a column that the generator does not know leaves the others in their place",
                   QStringLiteral("%1 loses %2").arg(QLatin1String(generator.name), column));
        }
    });
}

void cellsFitJson(const KnownValues &known)
{
    forEachGenerator(known, [](const Generator &generator, const QVariantMap &record) {
        const LineData lineData = filled(generator, record, generator.columns);
        for (auto cell = lineData.cbegin(); cell != lineData.cend(); ++cell) {
            for (const QString &role : {display, user})
                expect(fitsJson(cell->value(role)), "JSON can carry every cell",
                       QStringLiteral("%1 fills %2 with a %3")
                           .arg(QLatin1String(generator.name), generator.columns.value(cell.key()),
                                QLatin1String(cell->value(role).typeName())));
        }
    });
}

void emptyRecords(const KnownValues &)
{
    for (const Generator *generator : {&entrust(), &deal(), &position()})
        filled(*generator, {}, generator->columns);
}

} // namespace

CheckTable reportChecks()
{
    return {
        {"reports.entrust-columns", "Pages get null in columns of their orders.", entrustColumns, Part::Login},
        {"reports.deal-columns", "Pages get null in columns of their executions.", dealColumns, Part::Login},
        {"reports.position-columns", "Pages get null in columns of their positions.", positionColumns, Part::Login,
         TradingAccount},
        {"reports.columns-by-position", "Pages get a price for a quantity.", columnsByPosition, Part::Login},
        {"reports.unknown-columns", "Pages get null in the columns behind one that the host does not know.",
         unknownColumns, Part::Login},
        {"reports.cells-fit-json", "Pages get null for a cell that has a value.", cellsFitJson, Part::Login},
        {"reports.empty-records", "The terminal crashes on an event without a body.", emptyRecords},
    };
}

} // namespace HostCheck
