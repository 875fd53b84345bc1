#pragma once

#include "HostApi.h"
#include "QCefView.h"

#include <functional>

/// The host's access to a view: sets the page that receives its events.
class VARNEL_HOST_API QCefViewAccess {
public:
    /// Called on the view's thread for each event, in the order of the broadcasts, never during a broadcast.
    using Page = std::function<void(const QCefEvent &)>;

    /// Owning thread only.
    static void setPage(QCefView &view, Page page);

    /// Stands for a call into the library. Its destructor delivers the broadcast events at once, instead of at the next
    /// turn of the event loop. Owning thread only; the view must outlive it.
    class VARNEL_HOST_API Call {
    public:
        explicit Call(QCefView &view);
        ~Call();

    private:
        Q_DISABLE_COPY(Call)
        QCefView &m_view;
    };
};
