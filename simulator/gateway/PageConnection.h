#pragma once

#include "VarnelCefView.h"
#include "bridge/DataThread.h"
#include "bridge/TradeThread.h"
#include "gateway/PageSocket.h"

#include <QObject>
#include <QVariantList>

#include <memory>

namespace sim {

/// One connected page: its view and the view's dispatchers. Events go from the view straight to the page's socket.
/// Made when a page connects, and deleted after the end of the connection; user-interface thread only. It may be
/// deleted during a call of its page, while the terminal asks the user a question: nothing is used of it after a call.
class PageConnection : public QObject {
    Q_OBJECT
public:
    /// view: the one that shows the page. It outlives the connection, and may have another one after it. Without a view
    /// the connection makes its own, which shows nothing.
    PageConnection(std::shared_ptr<PageSocket> socket, QObject *parent, VarnelCefView *view = nullptr);

    /// Closes the connection.
    ~PageConnection() override;

    /// Makes the call of the page, or closes the connection when the frame is no call.
    void receive(const CallFrame &frame);

private:
    struct Route;
    static const Route kRoutes[];

    void invoke(const CallFrame &frame);
    bool call(const QString &method, const QVariantList &args);
    bool callData(const QString &method, const QVariantList &args);
    bool callTrade(const QString &method, const QVariantList &args);
    bool callMessageCenter(const QString &method, const QVariantList &args);

    const std::shared_ptr<PageSocket> m_socket;
    const int m_number;
    const std::unique_ptr<VarnelCefView> m_ownView; ///< or null
    VarnelCefView &m_view;
    DataThread *const m_data;   ///< child of the view
    TradeThread *const m_trade; ///< the same
};

} // namespace sim
