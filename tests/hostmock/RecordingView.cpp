#include "RecordingView.h"

#include "QtValues.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QHash>
#include <QThread>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <mutex>

namespace {

struct ViewState {
    QList<ViewEvent> events;
    bool answer = true;
    std::function<void()> hook;
};

struct ViewLog {
    std::mutex mutex;                         // guards the others
    QHash<const QCefView *, ViewState> views; // existing views
    QList<ViewEvent> all;
};

// Never destroyed: a view may outlive the statics of this library.
ViewLog &viewLog()
{
    static auto *const self = new ViewLog;
    return *self;
}

} // namespace

// QCefEvent

QCefEvent::QCefEvent(const QString &name) : m_name(name) {}

QString QCefEvent::eventName() const
{
    return m_name;
}

QVariantList &QCefEvent::arguments()
{
    return m_arguments;
}

const QVariantList &QCefEvent::arguments() const
{
    return m_arguments;
}

// QCefView and VarnelCefView. The state of a view is kept outside of it, so that a deleted one is noticed before it is
// used.

QCefView::QCefView(QWidget *parent) : QWidget(parent), d(nullptr)
{
    ViewLog &log = viewLog();
    const std::lock_guard<std::mutex> lock(log.mutex);
    log.views.insert(this, {});
}

QCefView::~QCefView()
{
    ViewLog &log = viewLog();
    const std::lock_guard<std::mutex> lock(log.mutex);
    log.views.remove(this);
}

bool QCefView::broadcastEvent(const QCefEvent &event)
{
    ViewLog &log = viewLog();
    std::unique_lock<std::mutex> lock(log.mutex);
    const auto state = log.views.find(this);
    if (state == log.views.end()) {
        std::fprintf(stderr, "HostMock: %s was broadcast to a view that is gone\n", qPrintable(event.eventName()));
        std::abort();
    }
    const ViewEvent record{this, event.eventName(), event.arguments(), QThread::currentThread()};
    state->events.append(record);
    log.all.append(record);
    if (thread() != record.thread) // wakes a waiting test
        QMetaObject::invokeMethod(
            this, [] {}, Qt::QueuedConnection);
    const bool answer = state->answer;
    const std::function<void()> hook = state->hook;
    lock.unlock();
    if (hook)
        hook();
    return answer;
}

VarnelCefView::VarnelCefView(QWidget *parent) : QCefView(parent) {}

VarnelCefView::~VarnelCefView() = default;

// RecordingView

RecordingView::RecordingView(QWidget *parent) : VarnelCefView(parent) {}

QList<ViewEvent> RecordingView::events() const
{
    ViewLog &log = viewLog();
    const std::lock_guard<std::mutex> lock(log.mutex);
    return log.views.value(this).events;
}

QStringList RecordingView::eventNames() const
{
    QStringList names;
    const QList<ViewEvent> all = events();
    for (const ViewEvent &event : all)
        names.append(event.name);
    return names;
}

testing::AssertionResult RecordingView::waitForEvents(int count, int timeoutMs) const
{
    if (spinUntil([&] { return events().size() >= count; }, timeoutMs))
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "waited for " << count << " events, got " << testing::PrintToString(events());
}

testing::AssertionResult RecordingView::waitForEvent(const QString &name, int timeoutMs) const
{
    int tested = 0;
    const auto hasCome = [&] {
        const QList<ViewEvent> all = events();
        while (tested < all.size()) {
            if (all.at(tested++).name == name)
                return true;
        }
        return false;
    };
    if (spinUntil(hasCome, timeoutMs))
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "waited for " << testing::PrintToString(name) << ", got "
                                       << testing::PrintToString(events());
}

QList<ViewEvent> RecordingView::eventsAfterDraining() const
{
    constexpr int endlessMs = 5000; // reached only when events post each other without end
    QCoreApplication::processEvents(QEventLoop::AllEvents, endlessMs);
    return events();
}

void RecordingView::clear()
{
    ViewLog &log = viewLog();
    const std::lock_guard<std::mutex> lock(log.mutex);
    log.views[this].events.clear();
}

void RecordingView::answerBroadcasts(bool answer)
{
    ViewLog &log = viewLog();
    const std::lock_guard<std::mutex> lock(log.mutex);
    log.views[this].answer = answer;
}

void RecordingView::whileBroadcasting(std::function<void()> hook)
{
    ViewLog &log = viewLog();
    const std::lock_guard<std::mutex> lock(log.mutex);
    log.views[this].hook = std::move(hook);
}

QList<ViewEvent> RecordingView::eventsOfAllViews()
{
    ViewLog &log = viewLog();
    const std::lock_guard<std::mutex> lock(log.mutex);
    return log.all;
}

void RecordingView::clearAllViews()
{
    ViewLog &log = viewLog();
    const std::lock_guard<std::mutex> lock(log.mutex);
    log.all.clear();
    for (ViewState &state : log.views)
        state.events.clear();
}

void PrintTo(const ViewEvent &event, std::ostream *os)
{
    *os << event.name.toStdString() << testing::PrintToString(event.arguments);
}

bool spinUntil(const std::function<bool()> &condition, int timeoutMs)
{
    const QDeadlineTimer deadline(timeoutMs);
    QTimer alarm; // ends the wait below when no other event comes; on Windows it may begin just after an event was sent
    alarm.start(qMin(timeoutMs, 100));
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    return true;
}
