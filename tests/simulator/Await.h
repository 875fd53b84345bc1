#pragma once

#include <QCoreApplication>
#include <QTimer>

/// Runs the event loop until the condition holds; false when that takes longer than half a minute. It checks the
/// condition after each event.
template <typename Condition>
bool await(Condition condition)
{
    constexpr int kPatienceMs = 30000;
    QTimer alarm; // wakes the wait below when no other event comes
    alarm.setSingleShot(true);
    alarm.start(kPatienceMs);
    while (!condition()) {
        if (!alarm.isActive())
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::sendPostedEvents(
            nullptr,
            QEvent::DeferredDelete); // processEvents leaves deferred deletions to event loops
    }
    return true;
}
