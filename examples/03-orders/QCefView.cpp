// A view that hands each event to its own thread.
#include "QCefView.h"

#include "PageEvent.h"

#include <QCoreApplication>

/// What a terminal keeps behind a view. These views keep nothing.
class QCefView::Private {};

QCefView::QCefView(QWidget *parent) : QWidget(parent), d(new Private) {}

QCefView::~QCefView()
{
    delete d;
}

bool QCefView::broadcastEvent(const QCefEvent &event)
{
    // Called from several threads, and while the library holds a lock. So it only queues.
    QCoreApplication::postEvent(this, new PageEvent(event));
    return true;
}
