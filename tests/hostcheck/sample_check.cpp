#include "host/Fault.h"
#include "host/World.h"
#include "hostcheck/HostCheck.h"

#include <cstdio>
#include <cstdlib>

// varnel-host-check for the sample host, with a main() of one's own. The argument "missing" stands for values that
// nobody has named.

namespace {

QString start(const QStringList &arguments, HostCheck::KnownValues &known)
{
    if (hasFault("StartFails"))
        return QStringLiteral("no login");
    if (hasFault("StartCrashes"))
        std::abort();
    while (hasFault("StartHangs"))
        QThread::msleep(1);
    if (hasFault("PrintsHalfALine"))
        std::fputs("half a line", stdout);
    if (arguments.contains(QStringLiteral("missing")))
        return {};
    known.symbol = kShare;
    known.bond = kBond;
    known.fundAccount = kFundAccount;
    known.tradingAccount = kTradingAccount;
    known.order.orderQty = 100;
    known.packRows = [](const QList<QVariantMap> &rows) {
        QVariantList message;
        for (const QVariantMap &row : rows)
            message.append(row);
        return message;
    };
    return {};
}

} // namespace

int main(int argc, char *argv[])
{
    HostCheck::Options options;
    options.start = start;
    return HostCheck::run(argc, argv, options);
}
