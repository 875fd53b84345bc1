#include "host/QCefViewPrivate.h"

void QCefView::Private::deliver()
{
    QVector<QCefEvent> events;
    {
        const std::lock_guard lock(mutex);
        events.swap(queue);
        isInCall = false;
    }
    for (const QCefEvent &event : qAsConst(events)) {
        if (page)
            page(event);
    }
}

QCefView::QCefView(QWidget *parent) : QWidget(parent), d(new Private) {}

QCefView::~QCefView()
{
    delete d;
}

bool QCefView::broadcastEvent(const QCefEvent &event)
{
    // Always queued: the library may hold a mutex and must not be called back from here. A burst wakes the thread once.
    const std::lock_guard lock(d->mutex);
    d->queue.append(event);
    if (d->queue.size() == 1 && !d->isInCall)
        d->wakeup.post();
    return true;
}
