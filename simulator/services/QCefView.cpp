#include "services/QCefViewAccess.h"

#include <QMetaObject>

class QCefView::Private {
public:
    QCefViewAccess::Page page; // owning thread only
};

QCefView::QCefView(QWidget *parent) : QWidget(parent), d(new Private) {}

QCefView::~QCefView()
{
    delete d;
}

bool QCefView::broadcastEvent(const QCefEvent &event)
{
    // Always queued, so that the library, which may hold a mutex, is never re-entered. Qt drops what is still queued
    // when the view dies.
    return QMetaObject::invokeMethod(
        this,
        [this, event] {
            if (d->page)
                d->page(event);
        },
        Qt::QueuedConnection);
}

void QCefViewAccess::setPage(QCefView &view, Page page)
{
    view.d->page = std::move(page);
}
