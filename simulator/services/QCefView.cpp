#include "services/QCefViewAccess.h"

#include "platform/Wakeup.h"

#include <QVector>

#include <mutex>

class QCefView::Private {
public:
    void deliver();

    QCefViewAccess::Page page; // owning thread only

    // Guarded by mutex
    std::mutex mutex;
    QVector<QCefEvent> queue;
    bool calling = false; ///< a delivery will come without a wake-up: at the end of the call that is under way

    sim::Wakeup wakeup{[this] { deliver(); }};
};

void QCefView::Private::deliver()
{
    QVector<QCefEvent> events;
    {
        const std::lock_guard lock(mutex);
        events.swap(queue);
        calling = false;
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
    // Always queued, so that the library, which may hold a mutex, is never re-entered. A burst wakes the thread once.
    const std::lock_guard lock(d->mutex);
    d->queue.append(event);
    if (d->queue.size() == 1 && !d->calling)
        d->wakeup.post();
    return true;
}

void QCefViewAccess::setPage(QCefView &view, Page page)
{
    view.d->page = std::move(page);
}

QCefViewAccess::Call::Call(QCefView &view) : m_view(view)
{
    const std::lock_guard lock(m_view.d->mutex);
    m_view.d->calling = true;
}

QCefViewAccess::Call::~Call()
{
    m_view.d->deliver();
}
