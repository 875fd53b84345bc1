#pragma once

#include <QMultiHash>
#include <QObject>
#include <QThread>
#include <QVariantMap>

class QvPresenterClass;

/// The message bus: delivers every event on a thread of its own. All operations may be called from any thread.
class Bus {
public:
    static Bus &instance();

    void subscribe(QvPresenterClass *presenter, int eventId);

    /// Delivers an event with that record to its subscribers.
    void publish(int eventId, const QVariantMap &record);

private:
    Bus();
    void deliver(int eventId, const QVariantMap &record);

    QThread m_thread;
    QObject m_courier;                                 ///< lives on m_thread: what is queued for it runs there
    QMultiHash<int, QvPresenterClass *> m_subscribers; ///< used on m_thread only
};
