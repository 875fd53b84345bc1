#pragma once

#include "platform/Command.h"
#include "platform/StrictJson.h"

#include <QDateTime>
#include <QVector>

namespace sim {

struct FundAccount;

/// A command, and when it is carried out.
struct TimelineEntry {
    QDateTime time;
    Command command;
};

/// Orders that a trading programme of the scenario enters all the time.
struct OrderFlowTerms {
    QString fundAccount;
    int ordersPerSecond = 0; ///< 0 means that there is no such programme
};

/// What goes wrong from the start: the key "faults" of a scenario, an object with the names of faults.
QVector<FaultSetting> readFaults(JsonNode &root);

/// The key "timeline". Entries keep the order of the text. start: of the scenario; invalid after a mistake.
QVector<TimelineEntry> readTimeline(JsonNode &root, const QDateTime &start);

/// The key "orderFlow".
OrderFlowTerms readOrderFlow(JsonNode &root, const QVector<FundAccount> &fundAccounts);

} // namespace sim
