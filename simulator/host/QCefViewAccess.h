#pragma once

#include "HostApi.h"
#include "QCefView.h"

#include <functional>

/// The host's access to a view: sets the page that receives its events.
class VARNEL_HOST_API QCefViewAccess {
public:
    /// Called for each event on the thread that broadcasts it, by several threads at once if they do so. As the
    /// broadcast itself, it must neither call the library nor delete a view, and it should only hand the event on.
    using Page = std::function<void(const QCefEvent &)>;

    /// Owning thread only, before another thread knows the view.
    static void setPage(QCefView &view, Page page);
};
