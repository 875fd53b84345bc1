#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QObject>

#include <functional>

namespace sim {

/// Runs a function on its maker's thread, after all that was queued there before, each time that some thread posts.
/// It carries no data: what the function needs is handed over under a mutex, which the thread sanitizer can see,
/// unlike what passes through Qt's event queue.
class Wakeup : public QObject {
public:
    explicit Wakeup(std::function<void()> function) : m_function(std::move(function)) {}

    /// Any thread, while the object lives.
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
