#include "hostcheck/checks/BusTalk.h"
#include "hostcheck/checks/Tables.h"

#include "Orlo_Keys.h"
#include "VarnelBusinessDataInterface.h"
#include "msgcenter/TradingEvents.h"

#include <QSet>

#include <algorithm>

namespace HostCheck {

namespace {

/// Two presenters: one that publishes events, and one that has subscribed to them. A bus may keep an event from its own
/// sender.
struct Line {
    Line() { receiver.SubEvent(receiver.pluginPid(), QVariant(strategyCallEvent()), 1); }

    /// Publishes the events and waits until all of them have come.
    void talk(const QStringList &markers)
    {
        for (const QString &marker : markers)
            publish(sender, marker);
        waitUntil([&] {
            const QStringList seen = markersAt(receiver);
            return std::all_of(markers.begin(), markers.end(), [&](const QString &m) { return seen.contains(m); });
        });
    }

    Probe sender;
    Probe receiver;
};

const QString kFirst = QStringLiteral("first");
const QString kSentinel = QStringLiteral("sentinel");

/// One event on its way over the bus. Sent once for all checks that look at it.
const std::vector<Probe::Delivery> &oneEvent()
{
    static const std::vector<Probe::Delivery> deliveries = [] {
        Line line;
        publish(line.sender, kFirst);
        waitUntil([&] { return !line.receiver.deliveries().empty(); });
        return line.receiver.deliveries();
    }();
    return deliveries;
}

const Probe::Delivery &arrivedEvent()
{
    if (oneEvent().empty())
        skip(QStringLiteral("no event arrives: see bus.events-arrive"));
    return oneEvent().front();
}

void eventsArrive(const KnownValues &)
{
    expect(!oneEvent().empty(), "an event arrives at a presenter that has subscribed to its id",
           QStringLiteral("nothing came"));
    const bool isOwn = oneEvent().front().thread != std::this_thread::get_id();
    remark(isOwn ? QStringLiteral("on a thread of the bus") : QStringLiteral("on the user-interface thread"));
}

void eventsHaveTheirType(const KnownValues &)
{
    const QVariant type = arrivedEvent().type;
    expect(type.toInt() == strategyCallEvent(), "an event arrives with its id as type",
           QStringLiteral("%1 instead of %2").arg(shown(type)).arg(strategyCallEvent()));
}

void eventsHaveTheirBody(const KnownValues &)
{
    expect(markerOf(arrivedEvent()) == kFirst, "an event arrives with the body that was sent",
           shown(arrivedEvent().data));
}

void eventsArriveAtTheirOperation(const KnownValues &)
{
    expect(arrivedEvent().operation == Probe::EventMsg, "the bus calls ProcEventMsg for an event",
           QStringLiteral("it calls %1").arg(Probe::nameOf(arrivedEvent().operation)));
}

/// The checks below tell events apart by their bodies.
void needBodies()
{
    if (markerOf(arrivedEvent()) != kFirst)
        skip(QStringLiteral("events lose their bodies: see bus.events-have-their-body"));
}

void eventsArriveOnce(const KnownValues &)
{
    needBodies();
    Line line;
    line.talk({kFirst, kSentinel});
    const int count = markersAt(line.receiver).count(kFirst);
    expect(count == 1, "an event arrives once", QStringLiteral("it came %1 times").arg(count));
}

void eventsArriveInOrder(const KnownValues &)
{
    needBodies();
    Line line;
    QStringList markers;
    for (int i = 0; i < 20; ++i)
        markers.append(QString::number(i));
    line.talk(markers);
    QStringList seen = markersAt(line.receiver);
    seen.removeDuplicates(); // bus.events-arrive-once tells
    expect(seen == markers, "events arrive in the order in which they were published", shown(seen));
}

int idOf(const QString &name)
{
    return VarnelBusinessDataInterface::GetOrloEventMsgIdByStr(name);
}

void idsStay(const KnownValues &)
{
    constexpr int kThreads = 4;
    using namespace Orlo_Keys::EventMsgName;
    for (const QString &name : {VELOX_TRANS_MSG_IN, VELOX_TRANS_MSG_OUT}) {
        std::vector<int> ids(kThreads + 1, idOf(name));
        onThreads(kThreads, [&](int number) { ids[size_t(number)] = idOf(name); });
        expect(std::count(ids.begin(), ids.end(), ids.front()) == int(ids.size()),
               "a name has the same event id each time, on every thread",
               QStringLiteral("\"%1\" has %2").arg(name, shown(QVector<int>(ids.begin(), ids.end()))));
    }
}

void idsDiffer(const KnownValues &)
{
    const int in = idOf(Orlo_Keys::EventMsgName::VELOX_TRANS_MSG_IN);
    const int out = idOf(Orlo_Keys::EventMsgName::VELOX_TRANS_MSG_OUT);
    expect(in != out, "calls to the strategy platform and its answers have different event ids",
           QStringLiteral("both have 0x%1").arg(in, 0, 16));
    for (const int id : {in, out})
        expect(std::find(std::begin(tradingEvents), std::end(tradingEvents), id) == std::end(tradingEvents),
               "the strategy platform's events have other ids than the trading events",
               QStringLiteral("0x%1").arg(id, 0, 16));
}

} // namespace

CheckTable busChecks()
{
    return {
        {"bus.event-ids-stay", "Strategy calls and their answers get lost.", idsStay},
        {"bus.event-ids-differ", "The library takes strategy messages for orders, or its own calls for answers.",
         idsDiffer},
        {"bus.events-arrive", "Pages get no orders, executions, positions, assets and strategy answers.", eventsArrive},
        {"bus.events-have-their-type", "The library ignores every event.", eventsHaveTheirType},
        {"bus.events-have-their-body", "Pages get empty records.", eventsHaveTheirBody},
        {"bus.events-call-their-operation", "The library takes events for K-line answers and ignores them.",
         eventsArriveAtTheirOperation},
        {"bus.events-arrive-once", "Pages get messages and status changes of strategies twice.", eventsArriveOnce},
        {"bus.events-arrive-in-order", "Pages show an old state of an order as its last.", eventsArriveInOrder},
    };
}

} // namespace HostCheck
