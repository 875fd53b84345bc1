// A view without a browser: it prints what a page would get.
#include "QCefView.h"

#include <cstdio>

/// What a terminal keeps behind a view: its browser. This view has none.
class QCefView::Private {};

QCefView::QCefView(QWidget *parent) : QWidget(parent), d(new Private) {}

QCefView::~QCefView()
{
    delete d;
}

bool QCefView::broadcastEvent(const QCefEvent &event)
{
    const QString text = event.arguments().value(0).toString();
    std::printf("%s %s\n", qUtf8Printable(event.eventName()), qUtf8Printable(text)); // safe from any thread
    return true;
}
