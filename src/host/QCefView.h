#pragma once

#include "HostApi.h"
#include "QCefEvent.h"

#include <QWidget>

/// A widget that shows one web page.
class VARNEL_HOST_API QCefView : public QWidget {
    Q_OBJECT
public:
    explicit QCefView(QWidget *parent = nullptr);
    ~QCefView() override;

    /// Hands the event to the page's listeners of that name. The library ignores the result.
    /// Replies and pushes come from the user-interface thread, the orders-loaded notice from the bus
    /// thread, replies of a DataThread that was made without a view from its own: the host makes this safe
    /// from any thread. It must not call back into the library, which
    /// may hold one of its mutexes meanwhile. The event is the caller's; the view takes a copy.
    bool broadcastEvent(const QCefEvent &event);

private:
    class Private;
    Private *const d;
    friend class QCefViewAccess; ///< for the host alone: reaches what it keeps behind the view
};
