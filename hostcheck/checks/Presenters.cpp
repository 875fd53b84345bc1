#include "hostcheck/checks/BusTalk.h"
#include "hostcheck/checks/Tables.h"

#include <condition_variable>
#include <cstring>
#include <mutex>
#include <new>

namespace HostCheck {

namespace {

void addressStays(const KnownValues &)
{
    constexpr int kThreads = 4;
    const Probe probe;
    const int address = probe.pluginPid();
    std::vector<int> seen(kThreads);
    onThreads(kThreads, [&](int number) { seen[size_t(number)] = probe.pluginPid(); });
    for (const int other : seen)
        expect(other == address, "pluginPid() gives the same address each time, on every thread",
               QStringLiteral("%1 and %2").arg(address).arg(other));
}

void addressesDiffer(const KnownValues &)
{
    const Probe first;
    const Probe second;
    expect(first.pluginPid() != second.pluginPid(), "each presenter has an address of its own",
           QStringLiteral("two have %1").arg(first.pluginPid()));
}

void endWithEventsOnTheirWay(const KnownValues &)
{
    Probe sender;
    Probe witness;
    const QVariant id = strategyCallEvent();

    // The witness holds the bus back, so that the events are still on their way when the other presenter ends.
    struct Gate {
        std::mutex mutex;
        std::condition_variable changed;
        bool isOpen = false;
    } gate;
    const std::thread::id mainThread = std::this_thread::get_id();
    witness.onDelivery([&] {
        std::unique_lock lock(gate.mutex);
        if (std::this_thread::get_id() != mainThread)
            gate.changed.wait_for(lock, std::chrono::milliseconds(patience() / 4), [&] { return gate.isOpen; });
    });
    witness.SubEvent(witness.pluginPid(), id, 1);

    // The place of the ended presenter is overwritten, so that a bus that still calls it crashes for certain.
    alignas(QvPresenterClass) unsigned char place[sizeof(QvPresenterClass)];
    auto *const ended =
        new (place) QvPresenterClass(QStringLiteral("VarnelHostCheckEnds"), nullptr, IMessageInterface::WebThreadType);
    ended->SubEvent(ended->pluginPid(), id, 1);
    for (int i = 0; i < 10; ++i)
        publish(sender, QStringLiteral("early"));
    ended->~QvPresenterClass();
    std::memset(place, 0, sizeof(place));
    {
        const std::lock_guard lock(gate.mutex);
        gate.isOpen = true;
        gate.changed.notify_all();
    }

    const QString sentinel = QStringLiteral("sentinel");
    publish(sender, sentinel);
    waitUntil([&] { return markersAt(witness).contains(sentinel); });
}

} // namespace

CheckTable presenterChecks()
{
    return {
        {"presenters.address-stays", "Answers get lost, because the library gives another address than it has.",
         addressStays},
        {"presenters.addresses-differ", "The library gets answers and events of the terminal's own presenters.",
         addressesDiffer},
        {"presenters.end-with-events-on-their-way",
         "The terminal crashes when it is closed, because the bus calls a presenter that has ended.",
         endWithEventsOnTheirWay},
    };
}

} // namespace HostCheck
