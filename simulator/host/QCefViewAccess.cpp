#include "host/QCefViewAccess.h"

#include "host/QCefViewPrivate.h"

void QCefViewAccess::setPage(QCefView &view, Page page)
{
    view.d->page = std::move(page);
}

QCefViewAccess::Call::Call(QCefView &view) : m_view(view)
{
    const std::lock_guard lock(m_view.d->mutex);
    m_view.d->isInCall = true;
}

QCefViewAccess::Call::~Call()
{
    m_view.d->deliver();
}
