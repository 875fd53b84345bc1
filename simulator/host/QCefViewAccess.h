#pragma once

#include "HostApi.h"
#include "QCefView.h"

#include <functional>

/// What the host keeps behind a view: the road to its page.
class VARNEL_HOST_API QCefViewAccess {
public:
    /// Called on the view's thread for each event, in the order of the broadcasts, and never from inside a broadcast.
    using Page = std::function<void(const QCefEvent &)>;

    /// Owning thread only.
    static void setPage(QCefView &view, Page page);

    /// A call into the library that is under way. At its end the page gets what has been broadcast, without the turn of
    /// the event loop that this would otherwise wait for. Owning thread only; the view must live until then.
    class VARNEL_HOST_API Call {
    public:
        explicit Call(QCefView &view);
        ~Call();

    private:
        Q_DISABLE_COPY(Call)
        QCefView &m_view;
    };
};
