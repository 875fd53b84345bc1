#pragma once

#include "host/QCefViewAccess.h"

/// What a view keeps. For QCefView and QCefViewAccess only.
class QCefView::Private {
public:
    QCefViewAccess::Page page;
};
