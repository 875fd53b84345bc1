#pragma once

#include "HostApi.h"
#include "VarnelCefView.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <functional>
#include <gtest/gtest.h>

class QThread;

/// One event that a view received.
struct ViewEvent {
    const QCefView *view = nullptr;
    QString name;
    QVariantList arguments;
    QThread *thread = nullptr; ///< that broadcast it; only for comparisons, it may be deleted
};
VARNEL_HOST_API void PrintTo(const ViewEvent &event, std::ostream *os);

/// A view that records all events broadcast to it from any thread. Created, used and destroyed on the user-interface
/// thread. An event for a deleted view aborts.
class VARNEL_HOST_API RecordingView : public VarnelCefView {
public:
    explicit RecordingView(QWidget *parent = nullptr);

    QList<ViewEvent> events() const;
    QStringList eventNames() const;

    /// Run the event loop until that many events, or an event of that name, have arrived since the last clear(). The
    /// failure message lists the events that arrived.
    testing::AssertionResult waitForEvents(int count, int timeoutMs = 5000) const;
    testing::AssertionResult waitForEvent(const QString &name, int timeoutMs = 5000) const;

    /// Runs all queued events of this thread, also those that they post, and returns all events so far. What is not
    /// among them did not happen, provided that other threads have finished before.
    QList<ViewEvent> eventsAfterDraining() const;

    void clear();

    /// Sets the return value of broadcastEvent(), which is true at first.
    void answerBroadcasts(bool answer);

    /// The hook is called during each broadcast, on the broadcasting thread, after the event was recorded.
    void whileBroadcasting(std::function<void()> hook);

    /// The events of all views, also deleted ones, in the order of the broadcasts.
    static QList<ViewEvent> eventsOfAllViews();
    static void clearAllViews();
};

/// Runs the event loop of this thread until the condition holds; false after the timeout. The condition is checked
/// after each event, so another thread that changes it must post one.
VARNEL_HOST_API bool spinUntil(const std::function<bool()> &condition, int timeoutMs = 5000);
