#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QObject>

#include <functional>

namespace sim {

/// Runs a function on the thread that made this object, once for each post() and after all events queued before.
/// It carries no data: hand data over under a mutex, which the thread sanitizer understands, unlike Qt's event queue.
class Wakeup : public QObject {
public:
    explicit Wakeup(std::function<void()> function) : m_function(std::move(function)) {}

    /// Any thread, as long as the object exists.
    void post() { QCoreApplication::postEvent(this, new QEvent(QEvent::User)); }

protected:
    bool event(QEvent *event) override
    {
        if (event->type() != QEvent::User)
            return QObject::event(event);
        m_function();
        return true;
    }

private:
    const std::function<void()> m_function;
};

} // namespace sim
