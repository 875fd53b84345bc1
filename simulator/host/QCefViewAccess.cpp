#include "host/QCefViewAccess.h"

#include "host/QCefViewPrivate.h"

void QCefViewAccess::setPage(QCefView &view, Page page)
{
    view.d->page = std::move(page);
}
