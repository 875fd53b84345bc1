#pragma once

#include "VarnelCefView.h"
#include "bridge/DataThread.h"
#include "bridge/TradeThread.h"

#include <QObject>
#include <QPointer>
#include <QSet>
#include <QVariantList>

class QTcpSocket;
class QWebSocket;

namespace sim {

/// One connected page: its WebSocket, the view that stands for it and the view's dispatchers.
/// Made by the Gateway when a page connects; deletes itself when the connection has ended; user-interface thread
/// only. It never goes away from inside a call of its page, however suddenly the page does.
class PageConnection : public QObject {
    Q_OBJECT
public:
    static constexpr int kMaxFrame = 1024 * 1024;

    /// What may wait when there is more to send. A page that lets more pile up has stopped reading and is dropped.
    static constexpr qint64 kMaxBacklog = qint64{16} * 1024 * 1024;

    /// Takes the socket over. tcp: what is below it, owned by it.
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
    DataThread *const m_data;       ///< child of the view
    TradeThread *const m_trade;     ///< the same
    QSet<QString> m_customMessages; ///< those that the page has subscribed to, or has once
    bool m_refused = false;         ///< frames that came before the close took effect no longer count
};

} // namespace sim
