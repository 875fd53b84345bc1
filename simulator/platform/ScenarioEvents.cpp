#include "platform/ScenarioEvents.h"

#include "books/Accounts.h"
#include "platform/ScenarioDays.h"

#include <algorithm>
#include <cmath>

namespace sim {

namespace {

constexpr double kMostSeconds = 1e7; // about four months
constexpr int kMostOrdersPerSecond = 5000;

const QString kFaults = QStringLiteral("faults");
const QString kTimeline = QStringLiteral("timeline");
const QString kAfter = QStringLiteral("after");
const QString kAt = QStringLiteral("at");
const QString kDo = QStringLiteral("do");
const QString kOrderFlow = QStringLiteral("orderFlow");
const QString kFundAccount = QStringLiteral("fundAccount");
const QString kOrdersPerSecond = QStringLiteral("ordersPerSecond");

QDateTime readTime(JsonNode &node, const QDateTime &start)
{
    if (node.has(kAfter) == node.has(kAt)) {
        node.fail(node.has(kAt) ? kAt : kAfter, QStringLiteral("either \"after\" or \"at\" must be there"));
        for (const QString &key : {kAfter, kAt}) {
            if (node.has(key))
                node.skip(key);
        }
        return {};
    }
    if (node.has(kAfter)) {
        const std::optional<double> seconds = node.number(kAfter, 0, kMostSeconds);
        return seconds ? start.addMSecs(std::llround(*seconds * 1000)) : QDateTime();
    }
    const QDateTime time = readDateTime(node, kAt);
    if (time.isValid() && start.isValid() && time < start)
        node.fail(kAt, QStringLiteral("must not be before the scenario starts"));
    return time;
}

} // namespace

QVector<FaultSetting> readFaults(JsonNode &root)
{
    QVector<FaultSetting> faults;
    std::optional<JsonNode> node;
    if (root.has(kFaults))
        node = root.object(kFaults);
    if (!node)
        return faults;
    for (const FaultInfo &info : Faults::all()) {
        const QString key = QLatin1String(info.name);
        if (!node->has(key))
            continue;
        const int value = info.kind == FaultKind::Switch ? int(node->boolean(key))
                                                         : int(node->wholeNumber(key, 0, info.most).value_or(0));
        faults.append({info.fault, value});
    }
    node->finish();
    return faults;
}

QVector<TimelineEntry> readTimeline(JsonNode &root, const QDateTime &start)
{
    QVector<TimelineEntry> timeline;
    if (!root.has(kTimeline))
        return timeline;
    for (JsonNode &node : root.objectsIfAny(kTimeline)) {
        TimelineEntry entry;
        entry.time = readTime(node, start);
        const QString text = node.text(kDo);
        const QString problem = text.isEmpty() ? QString() : Command::parse(text, entry.command);
        if (!problem.isEmpty())
            node.fail(kDo, problem);
        node.finish();
        timeline.append(entry);
    }
    return timeline;
}

OrderFlowTerms readOrderFlow(JsonNode &root, const QVector<FundAccount> &fundAccounts)
{
    OrderFlowTerms terms;
    std::optional<JsonNode> node;
    if (root.has(kOrderFlow))
        node = root.object(kOrderFlow);
    if (!node)
        return terms;
    terms.fundAccount = node->text(kFundAccount);
    terms.ordersPerSecond = int(node->wholeNumber(kOrdersPerSecond, 1, kMostOrdersPerSecond).value_or(0));
    node->finish();
    const bool isKnown = std::any_of(fundAccounts.begin(), fundAccounts.end(),
                                     [&](const FundAccount &fund) { return fund.account == terms.fundAccount; });
    if (!isKnown && !terms.fundAccount.isEmpty() && !fundAccounts.isEmpty())
        node->fail(kFundAccount, QStringLiteral("\"%1\" is not one of the fund accounts").arg(terms.fundAccount));
    return terms;
}

} // namespace sim
