#pragma once

#include "gateway/GatewayServer.h"
#include "platform/Wakeup.h"

#include <QHash>
#include <QObject>
#include <QPointer>

#include <chrono>
#include <deque>
#include <mutex>

namespace sim {

class PageConnection;

/// The simulator's gateway: a server for files and pages, and a PageConnection for each page.
/// Made and destroyed by main on the user-interface thread, after the terminal and before it; without a terminal it
/// serves files only. The server has a thread of its own; what it has to tell is
/// taken up here, one piece in each turn of the event loop.
class Gateway : public QObject {
    Q_OBJECT
public:
    /// root, inspector: the folders of the static files and of the inspector, or empty. allowedOrigins: in addition to
    /// its own. httpDeadline: for a client to send the head of its request, and again to receive the answer.
    /// pagesBefore: how many numbers of pages are taken.
    Gateway(const QString &root, const QStringList &allowedOrigins, const QString &inspector = {},
            std::chrono::milliseconds httpDeadline = std::chrono::seconds(10), int pagesBefore = 0);

    /// Closes all pages.
    ~Gateway() override;

    /// Port 0 means any free port. On failure it returns false, and errorString() says why.
    bool listen(quint16 port);

    quint16 port() const { return m_server.port(); }
    QString errorString() const { return m_error; }

    /// For a page that does not come through the gateway.
    int newPageNumber() { return m_server.newPageNumber(); }

private:
    void tell(PageNews news); ///< on the server's thread
    void takeNews();

    QString m_error;
    QHash<const PageSocket *, QPointer<PageConnection>> m_pages; ///< that are connected

    std::mutex m_mutex;
    std::deque<PageNews> m_news; ///< guarded by m_mutex
    Wakeup m_wakeup{[this] { takeNews(); }};

    GatewayServer m_server;
};

} // namespace sim
