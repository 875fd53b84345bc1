#pragma once

#include "host/QCefViewAccess.h"
#include "platform/Wakeup.h"

#include <QVector>

#include <mutex>

/// What a view keeps: its page, and the events on their way to it. For QCefView and QCefViewAccess only.
class QCefView::Private {
public:
    /// Gives the page all queued events. Owning thread only.
    void deliver();

    QCefViewAccess::Page page; // owning thread only

    // Guarded by mutex
    std::mutex mutex;
    QVector<QCefEvent> queue;
    bool isInCall = false; ///< the end of the current call delivers: no wake-up is needed

    sim::Wakeup wakeup{[this] { deliver(); }};
};
