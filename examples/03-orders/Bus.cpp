#include "Bus.h"

#include "QvPresenterClass.h"

#include <QCoreApplication>

Bus &Bus::instance()
{
    static auto *const bus = new Bus; // never deleted: presenters may live until the process ends
    return *bus;
}

Bus::Bus()
{
    m_courier.moveToThread(&m_thread);
    m_thread.start();
    // After this nothing is delivered any more, so that views and presenters can end.
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, [this] {
        m_thread.quit();
        m_thread.wait();
    });
}

void Bus::subscribe(QvPresenterClass *presenter, int eventId)
{
    const std::lock_guard<std::recursive_mutex> lock(m_mutex);
    m_subscribers.insert(eventId, presenter);
}

void Bus::leave(QvPresenterClass *presenter)
{
    const std::lock_guard<std::recursive_mutex> lock(m_mutex);
    for (auto it = m_subscribers.begin(); it != m_subscribers.end();)
        it = *it == presenter ? m_subscribers.erase(it) : std::next(it);
}

void Bus::publish(int eventId, const QVariant &body)
{
    const auto deliver = [this, eventId, body] {
        const std::lock_guard<std::recursive_mutex> lock(m_mutex);
        for (QvPresenterClass *const presenter : m_subscribers.values(eventId))
            presenter->ProcEventMsg("orders", eventId, body);
    };
    QMetaObject::invokeMethod(&m_courier, deliver, Qt::QueuedConnection);
}
