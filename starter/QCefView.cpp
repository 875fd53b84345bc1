// The terminal must put here: its browser, and how an event reaches the listeners of the page from any thread.
#include "QCefView.h"

/// What the terminal keeps behind a view: here nothing.
class QCefView::Private {};

QCefView::QCefView(QWidget *parent) : QWidget(parent), d(new Private) {}

QCefView::~QCefView()
{
    delete d;
}

bool QCefView::broadcastEvent(const QCefEvent &)
{
    return false; // there is no page
}
