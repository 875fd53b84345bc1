#include "Bus.h"

#include "CPackMessageCommon.h"
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
    QMetaObject::invokeMethod(
        &m_courier, [this, presenter, eventId] { m_subscribers.insert(eventId, presenter); }, Qt::QueuedConnection);
}

void Bus::publish(int eventId, const QVariantMap &record)
{
    QMetaObject::invokeMethod(
        &m_courier, [this, eventId, record] { deliver(eventId, record); }, Qt::QueuedConnection);
}

void Bus::deliver(int eventId, const QVariantMap &record)
{
    CPackMessageCommon pack;
    for (auto field = record.cbegin(); field != record.cend(); ++field)
        pack.AddVaule(field.key(), field.value());
    const QVariant body = pack.GetPackedMsg(0);
    for (QvPresenterClass *const presenter : m_subscribers.values(eventId))
        presenter->ProcEventMsg("orders", eventId, body);
}
