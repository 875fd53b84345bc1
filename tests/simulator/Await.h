#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimer>

/// Turns the event loop until the condition holds; false when it does not within ten seconds. It waits for events,
/// never for time.
template <typename Condition>
bool await(Condition condition)
{
    constexpr int kPatienceMs = 10000;
    const QDeadlineTimer deadline(kPatienceMs);
    QTimer wakeAtDeadline;
    wakeAtDeadline.setSingleShot(true);
    wakeAtDeadline.start(kPatienceMs);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::sendPostedEvents(nullptr,
                                           QEvent::DeferredDelete); // event loops do this, processEvents does not
    }
    return true;
}
