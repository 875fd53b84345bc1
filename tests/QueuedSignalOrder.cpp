// Tells the thread sanitizer that a queued signal orders two threads. Qt's event queue is not instrumented: without
// this, what a thread writes before it emits a signal looks raced for when the receiver's thread reads it. Every
// program of the sanitizer build that delivers signals between threads has this file.
//
// A sender is ordered with the receivers of its own signals only, and the copy of an argument with its own reader, so
// that other races stay visible: PlantedRace.cpp shows it.
#include <QEvent>
#include <QList>
#include <QObject>
#include <QVariantMap>

#include <private/qobject_p.h>
#include <sanitizer/tsan_interface.h>

namespace {

void onSignal(QObject *sender, int, void **)
{
    __tsan_release(sender);
}

// Qt copies the arguments after that, on the sender's thread. Of its own types it does so inside Qt, which is not
// instrumented. Other types that queued signals carry are registered here first, with a copying that tells of itself.

template <typename T>
void *copyAndTell(void *where, const void *argument)
{
    void *const copy = QtMetaTypePrivate::QMetaTypeFunctionHelper<T>::Construct(where, argument);
    __tsan_release(copy);
    return copy;
}

/// Also of a copy that was never delivered, because its receiver was gone.
template <typename T>
void destroyCopy(void *copy)
{
    __tsan_acquire(copy);
    QtMetaTypePrivate::QMetaTypeFunctionHelper<T>::Destruct(copy);
}

/// name: as Qt writes it.
template <typename T>
int tellWhenCopied(const char *name)
{
    return QMetaType::registerNormalizedType(name, destroyCopy<T>, copyAndTell<T>, int(sizeof(T)),
                                             QMetaType::TypeFlags(QtPrivate::QMetaTypeTypeFlags<T>::Flags),
                                             QtPrivate::MetaObjectForType<T>::value());
}

const int toldTypes[] = {tellWhenCopied<QList<QVariantMap>>("QList<QVariantMap>")};

void acquireArguments(QMetaCallEvent &event)
{
    void **const arguments = event.args();
    const int *const types = event.types(); // they lie behind the arguments
    const auto count = reinterpret_cast<void *const *>(types) - arguments;
    for (std::ptrdiff_t i = 1; i < count; ++i) { // the first is for what is returned
        for (const int told : toldTypes) {
            if (types[i] == told)
                __tsan_acquire(arguments[i]);
        }
    }
}

/// Called by Qt before it delivers an event. `false` lets Qt go on.
bool onEvent(void **receiverAndEvent)
{
    auto *const event = static_cast<QEvent *>(receiverAndEvent[1]);
    if (event->type() != QEvent::MetaCall)
        return false;
    if (const QObject *sender = static_cast<const QAbstractMetaCallEvent *>(event)->sender())
        __tsan_acquire(const_cast<QObject *>(sender));            // only its address counts
    if (auto *const call = dynamic_cast<QMetaCallEvent *>(event)) // others carry no arguments
        acquireArguments(*call);
    return false;
}

const bool registered = [] {
    static QSignalSpyCallbackSet onSignals{onSignal, nullptr, nullptr, nullptr};
    qt_register_signal_spy_callbacks(&onSignals);
    return QInternal::registerCallback(QInternal::EventNotifyCallback, onEvent);
}();

} // namespace
