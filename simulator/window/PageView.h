#pragma once

#include "VarnelCefView.h"

#include <QWebChannel>
#include <QWebEngineView>

#include <functional>
#include <memory>

namespace sim {

class BridgeAccess;
class Gateway;
class PageConnection;
class PageView;

/// What the script of a page talks to over the web channel, which offers everything that is public here to the page.
class PageBridge : public QObject {
    Q_OBJECT
public:
    explicit PageBridge(PageView &view) : m_view(view) {}

    Q_INVOKABLE void open(const QString &key, const QString &page);
    Q_INVOKABLE void send(const QString &key, const QString &page, const QString &frame);

signals:
    void eventSent(const QString &page, const QString &frame); ///< to the page

private:
    PageView &m_view;
};

/// A tab of the terminal's window: a view with a browser in it. It hands the page's calls to the library in the same
/// process, and the library's events to the page. User-interface thread only.
///
/// A reload gives the view a new page: the old page's connection ends with its quote subscriptions, and the new page
/// gets a connection of its own on the same view. The view may be deleted while a call of its page is under way.
class PageView : public VarnelCefView {
    Q_OBJECT
public:
    using OpenTab = std::function<QWebEnginePage *()>; ///< for a page that the page opens

    PageView(QWebEngineProfile &profile, const BridgeAccess &access, Gateway &gateway, const OpenTab &openTab);
    ~PageView() override;

    QWebEngineView &browser() { return m_browser; }

    /// Whether a page of this address gets the bridge.
    bool hasBridge() const;

private:
    friend class PageBridge;

    /// Does it from the event loop, if the view still lives: what pages ask for may spin the event loop, and nothing of
    /// Chromium must wait on the stack then. The order stays.
    void later(std::function<void()> task);

    void begin(const QString &page);
    void call(const QString &page, const QString &frame);
    void end();

    const BridgeAccess &m_access;
    Gateway &m_gateway;
    PageBridge m_bridge{*this};
    QWebChannel m_channel;
    QWebEngineView m_browser;
    QString m_page;                               ///< the page's own name for itself
    std::unique_ptr<PageConnection> m_connection; ///< null while there is no page with a bridge
};

} // namespace sim
