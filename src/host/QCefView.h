#pragma once

#include "HostApi.h"
#include "QCefEvent.h"

#include <QWidget>

/// A widget that shows one web page.
class VARNEL_HOST_API QCefView : public QWidget {
    Q_OBJECT
public:
    /// Made by the host, on the user-interface thread.
    explicit QCefView(QWidget *parent = nullptr);
    ~QCefView() override;

    /// Hands the event to the page's listeners of that name, each argument as one value. The library ignores the
    /// result. Replies and pushes come from the user-interface thread, the notice that the orders are loaded from the
    /// bus's thread, replies of a DataThread that was made without a view from its own: the host makes this safe from
    /// any thread. It must neither call the library nor delete a view, not even another one: ticks and strategy
    /// messages are broadcast to one view after the other while the library holds a lock. The event is the caller's;
    /// the view takes a copy. Events of one thread must reach the page in the order in which they were broadcast.
    bool broadcastEvent(const QCefEvent &event);

private:
    class Private;
    Private *const d;
    friend class QCefViewAccess; ///< for the host alone: reaches what it keeps behind the view
};
