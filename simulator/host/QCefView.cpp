#include "host/QCefViewPrivate.h"

QCefView::QCefView(QWidget *parent) : QWidget(parent), d(new Private) {}

QCefView::~QCefView()
{
    delete d;
}

bool QCefView::broadcastEvent(const QCefEvent &event)
{
    if (d->page)
        d->page(event);
    return true;
}
