#pragma once

#include "common/Export.h"

#include <QObject>
#include <QThread>
#include <QVariantList>

class VarnelCefView;
struct Operation;

/// Receives the "Trade_" calls of one web view and broadcasts each reply on that view.
/// The host makes one for each view, with the view as its Qt parent, and deletes it, or lets it go with the
/// view. A running QApplication is needed.
/// It lives on the thread that made it; only when made without a view does it move to a thread of its own, and then it
/// answers nothing.
/// It never owns the view, and never repeats a call or remembers one.
class VARNEL_WEBSDK_API TradeThread : public QObject {
    Q_OBJECT
public:
    /// view becomes the Qt parent. Call it on the user-interface thread.
    explicit TradeThread(VarnelCefView *view);

    /// Waits up to 3 seconds for its thread.
    ~TradeThread() override;

    /// Runs the handler of that name, or queues it when called from another thread. True when there is one; false,
    /// without any reply, when there is none. Names are compared exactly. args: the page's arguments, its call
    /// identifier (uuid) first; with too few of them the page gets an empty text, and no order is placed. The
    /// identifiers of browser and frame are not used. On the dispatcher's own thread an order has been placed or
    /// refused when this returns; args must live until then.
    Q_INVOKABLE bool onInvokeMethod(int browserId, int frameId, const QString &method, const QVariantList &args);

private:
    // The handlers, found by name. Their order is fixed.
    Q_INVOKABLE void Trade_reqCancelOrder_REQ(const QVariantList &args);
    Q_INVOKABLE void Trade_insertOrder_REQ(const QVariantList &args);
    Q_INVOKABLE void Trade_insertOrderList_REQ(const QVariantList &args);

    template <typename... Readings, typename Order>
    void answer(const Operation &operation, const QString &replyEvent, const QVariantList &args, Order order);

    QThread m_thread; ///< runs an empty event loop when the object could not move there

    VarnelCefView *m_view = nullptr; ///< not owned; constant after construction
};
