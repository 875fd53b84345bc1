#include "hostcheck/Waiting.h"
#include "hostcheck/checks/Tables.h"

#include "VarnelCefView.h"

#include <QCoreApplication>
#include <QPointer>

#include <condition_variable>
#include <memory>
#include <mutex>

namespace HostCheck {

namespace {

/// The event without an argument that the library sends from the bus thread.
QCefEvent sampleEvent()
{
    return QCefEvent(QStringLiteral("on_orderLoaded"));
}

void eventsAreValues(const KnownValues &)
{
    const QString name = QStringLiteral("on_事件");
    QCefEvent event(name);
    expect(event.eventName() == name, "eventName() is the name that the event was made with", shown(event.eventName()));
    event.arguments().append(QStringLiteral("first"));
    const QCefEvent copy = event;
    event.arguments().append(QStringLiteral("second"));
    const QVariantList wanted{QStringLiteral("first"), QStringLiteral("second")};
    expect(qAsConst(event).arguments() == wanted, "arguments() keeps what is appended to it",
           shown(qAsConst(event).arguments()));
    expect(copy.eventName() == name && copy.arguments() == wanted.mid(0, 1),
           "a copy of an event does not change with the original", shown(copy.arguments()));
}

void broadcastsFromThreads(const KnownValues &)
{
    constexpr int kThreads = 4;
    constexpr int kEvents = 25;
    // The threads and this check share the counter: a thread that hangs outlives the check.
    struct Counter {
        std::mutex mutex;
        std::condition_variable changed;
        int ended = 0;
    };
    const auto counter = std::make_shared<Counter>();
    auto *const view = new VarnelCefView;
    for (int i = 0; i < kThreads; ++i) {
        std::thread([counter, view] {
            for (int event = 0; event < kEvents; ++event)
                view->broadcastEvent(sampleEvent());
            const std::lock_guard lock(counter->mutex);
            ++counter->ended;
            counter->changed.notify_all();
            wakeMainThread();
        }).detach();
    }
    const auto endedThreads = [&] {
        const std::lock_guard lock(counter->mutex);
        return counter->ended;
    };
    {
        // This thread turns no event loop meanwhile, as one that is busy with a page call.
        std::unique_lock lock(counter->mutex);
        counter->changed.wait_for(lock, std::chrono::milliseconds(patience()),
                                  [&] { return counter->ended == kThreads; });
    }
    const int ended = endedThreads();
    // The threads must not outlive the host, so that those that hang get what they wait for.
    if (ended == kThreads || waitUntil([&] { return endedThreads() == kThreads; }))
        delete view;
    expect(ended == kThreads, "broadcastEvent returns on every thread while the user-interface thread is busy",
           QStringLiteral("%1 of %2 threads got through").arg(ended).arg(kThreads));
}

void keepsTheEventLoop(const KnownValues &)
{
    const QPointer<VarnelCefView> view(new VarnelCefView);
    QObject receiver;
    bool turned = false;
    QMetaObject::invokeMethod(
        &receiver, [&] { turned = true; }, Qt::QueuedConnection);
    view->broadcastEvent(sampleEvent());
    delete view;
    expect(!turned, "broadcastEvent does not turn the event loop", QStringLiteral("another event was handled in it"));
}

void keepsTheView(const KnownValues &)
{
    const QPointer<VarnelCefView> view(new VarnelCefView);
    view->broadcastEvent(sampleEvent());
    expect(view, "the view still exists when broadcastEvent returns", QStringLiteral("it was deleted"));
    delete view;
}

void endsWithEventsOnTheirWay(const KnownValues &)
{
    const QPointer<VarnelCefView> view(new VarnelCefView);
    for (int i = 0; i < 10 && view; ++i)
        view->broadcastEvent(sampleEvent());
    delete view;
    QObject receiver;
    bool turned = false; // behind everything that the broadcasts have queued for this thread
    QMetaObject::invokeMethod(
        &receiver, [&] { turned = true; }, Qt::QueuedConnection);
    waitUntil([&] { return turned; });
}

} // namespace

CheckTable viewChecks()
{
    return {
        {"views.events-are-values", "Pages get events with the arguments of another event.", eventsAreValues},
        {"views.broadcast-from-threads",
         "The terminal crashes or stands still when the notice that the orders are loaded is sent from the bus thread.",
         broadcastsFromThreads},
        {"views.broadcast-keeps-the-event-loop",
         "The terminal stands still: events that call the library are handled while the library holds a lock.",
         keepsTheEventLoop},
        {"views.broadcast-keeps-the-view", "The terminal crashes: the library goes on with a view that is deleted.",
         keepsTheView},
        {"views.end-with-events-on-their-way", "The terminal crashes when a page is closed that gets pushes.",
         endsWithEventsOnTheirWay},
    };
}

} // namespace HostCheck
