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

/// One event as a view received it.
struct ViewEvent {
    const QCefView *view = nullptr;
    QString name;
    QVariantList arguments;
    QThread *thread = nullptr; ///< that broadcast it; compare only, it may be gone
};
VARNEL_HOST_API void PrintTo(const ViewEvent &event, std::ostream *os);

/// A view that keeps every event broadcast to it, from any thread. Created, asked and destroyed on the
/// user-interface thread. An event for a view that is gone aborts.
class VARNEL_HOST_API RecordingView : public VarnelCefView {
public:
    explicit RecordingView(QWidget *parent = nullptr);

    QList<ViewEvent> events() const;
    QStringList eventNames() const;

    /// Run the event loop until that many events have come since the last clear(), or one of that name;
    /// what came instead is in the failure message.
    testing::AssertionResult waitForEvents(int count, int timeoutMs = 5000) const;
    testing::AssertionResult waitForEvent(const QString &name, int timeoutMs = 5000) const;

    /// Runs everything that is due on this thread, also what that posts in turn, and gives all events so
    /// far: what is not among them did not happen. Work of other threads must be waited for before.
    QList<ViewEvent> eventsAfterDraining() const;

    void clear();

    /// What broadcastEvent() answers from now on; true at first.
    void answerBroadcasts(bool answer);

    /// Called within each broadcast to this view, on the thread that broadcasts, after the event was recorded.
    void whileBroadcasting(std::function<void()> hook);

    /// The events of all views, dead ones included, in the order of their broadcasting.
    static QList<ViewEvent> eventsOfAllViews();
    static void clearAllViews();
};

/// Runs the event loop of this thread until the condition holds; false after the time. The condition is
/// tested again after every event, so a change made elsewhere has to post one.
VARNEL_HOST_API bool spinUntil(const std::function<bool()> &condition, int timeoutMs = 5000);
