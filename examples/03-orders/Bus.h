#pragma once

#include <QMultiHash>
#include <QObject>
#include <QThread>
#include <QVariant>

#include <mutex>

class QvPresenterClass;

/// The message bus: delivers every event on a thread of its own. All operations may be called from any thread.
class Bus {
public:
    static Bus &instance();

    void subscribe(QvPresenterClass *presenter, int eventId);

    /// Ends the subscriptions of the presenter, and waits for the event that is being delivered.
    void leave(QvPresenterClass *presenter);

    /// Delivers the event to its subscribers. The body is a packed message.
    void publish(int eventId, const QVariant &body);

private:
    Bus();

    QThread m_thread;
    QObject m_courier; ///< lives on m_thread: what is queued for it runs there

    /// Held while an event is delivered. Recursive, because a presenter may subscribe meanwhile.
    std::recursive_mutex m_mutex;
    QMultiHash<int, QvPresenterClass *> m_subscribers; ///< guarded by m_mutex
};
