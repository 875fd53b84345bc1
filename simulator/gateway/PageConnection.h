#pragma once

#include "VarnelCefView.h"
#include "bridge/DataThread.h"
#include "bridge/TradeThread.h"

#include <QObject>
#include <QPointer>
#include <QVariantList>

class QTcpSocket;
class QWebSocket;

namespace sim {

/// One connected page: its WebSocket, its view and the view's dispatchers.
/// Made by the Gateway when a page connects; deletes itself after the end of the connection; user-interface thread
/// only. It is never deleted during a call of its page, even when the page disconnects meanwhile.
class PageConnection : public QObject {
    Q_OBJECT
public:
    static constexpr int kMaxFrame = 1024 * 1024;

    /// Bytes that may be queued before a further event. A page with more has stopped reading, and its connection is
    /// closed.
    static constexpr qint64 kMaxBacklog = qint64{16} * 1024 * 1024;

    /// Takes ownership of the socket. tcp: its TCP socket, which it owns.
    PageConnection(QWebSocket *socket, const QPointer<QTcpSocket> &tcp, int number, QObject *parent);
    ~PageConnection() override;

private:
    struct Route;
    static const Route kRoutes[];

    void receive(const QString &frame);
    void refuse(const QString &reason);
    void invoke(const QString &method, const QVariantList &args);
    bool callData(const QString &method, const QVariantList &args);
    bool callTrade(const QString &method, const QVariantList &args);
    bool callMessageCenter(const QString &method, const QVariantList &args);
    void send(const QCefEvent &event);

    QWebSocket *const m_socket;
    const int m_number;
    VarnelCefView m_view;
    DataThread *const m_data;   ///< child of the view
    TradeThread *const m_trade; ///< the same
    bool m_refused = false;     ///< after a bad frame: further frames are ignored until the connection is closed
};

} // namespace sim
