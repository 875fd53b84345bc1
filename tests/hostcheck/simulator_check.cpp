#include "hostcheck/HostCheck.h"
#include "platform/PackedRow.h"
#include "terminal/Terminal.h"

#include <memory>

// varnel-host-check for the simulator's host: a main() of one's own that starts the host and names what exists.

namespace {

constexpr double kSpeed = 1000; // as in the simulator's own tests

std::unique_ptr<sim::Terminal> s_terminal;

QVariant packedRows(const QList<QVariantMap> &rows)
{
    QVariantList message;
    for (const QVariantMap &row : rows) {
        PackedRow fields;
        for (auto field = row.cbegin(); field != row.cend(); ++field)
            fields.append({field.key(), *field});
        message.append(QVariant::fromValue(fields));
    }
    return message;
}

QString start(const QStringList &, HostCheck::KnownValues &known)
{
    sim::Scenario scenario;
    QString error;
    if (!sim::Scenario::read(sim::Scenario::defaultFile(), scenario, error))
        return error;
    s_terminal = std::make_unique<sim::Terminal>(scenario, scenario.logins.first(), kSpeed);
    const sim::FundAccount &fund = scenario.fundAccounts.first();
    known.fundAccount = fund.account;
    known.tradingAccount = fund.tradingAccounts.first();
    known.symbol = scenario.securities.first().symbol;
    for (const sim::Instrument &security : qAsConst(scenario.securities)) {
        if (security.kind == sim::SecurityKind::Bond)
            known.bond = security.symbol;
    }
    known.startTime = scenario.start.date().addDays(-7).toString(QStringLiteral("yyyyMMdd"));
    known.order.side = QStringLiteral("Buy");
    known.order.priceType = QStringLiteral("Limit");
    known.order.price = QStringLiteral("18.00");
    known.order.orderQty = 100;
    known.packRows = packedRows;
    return {};
}

} // namespace

int main(int argc, char *argv[])
{
    HostCheck::Options options;
    options.start = start;
    options.stop = [] { s_terminal.reset(); };
    return HostCheck::run(argc, argv, options);
}
