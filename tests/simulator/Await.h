#pragma once

#include <QCoreApplication>
#include <QTimer>

/// Turns the event loop until the condition holds; false when it does not within half a minute. It waits for events,
/// never for time.
template <typename Condition>
bool await(Condition condition)
{
    constexpr int kPatienceMs = 30000;
    QTimer alarm; // also ends the wait below when nothing else does
    alarm.setSingleShot(true);
    alarm.start(kPatienceMs);
    while (!condition()) {
        if (!alarm.isActive())
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::sendPostedEvents(nullptr,
                                           QEvent::DeferredDelete); // event loops do this, processEvents does not
    }
    return true;
}
