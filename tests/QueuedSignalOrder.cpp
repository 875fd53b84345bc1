// Tells the thread sanitizer that a queued signal orders two threads. Qt's event queue is not instrumented: without
// this, what a thread writes before it emits a signal looks raced for when the receiver's thread reads it. Every test
// executable of the sanitizer build has this file.
//
// A sender is ordered with the receivers of its own signals only, so that other races stay visible.
#include <QEvent>
#include <QObject>

#include <private/qobject_p.h>
#include <sanitizer/tsan_interface.h>

namespace {

void onSignal(QObject *sender, int, void **)
{
    __tsan_release(sender);
}

/// Called by Qt before it delivers an event. `false` lets Qt go on.
bool onEvent(void **receiverAndEvent)
{
    const auto *event = static_cast<QEvent *>(receiverAndEvent[1]);
    if (event->type() != QEvent::MetaCall)
        return false;
    if (const QObject *sender = static_cast<const QAbstractMetaCallEvent *>(event)->sender())
        __tsan_acquire(const_cast<QObject *>(sender)); // only its address counts
    return false;
}

const bool registered = [] {
    static QSignalSpyCallbackSet onSignals{onSignal, nullptr, nullptr, nullptr};
    qt_register_signal_spy_callbacks(&onSignals);
    return QInternal::registerCallback(QInternal::EventNotifyCallback, onEvent);
}();

} // namespace
