#pragma once

#include "VarnelCefView.h"

#include <QVariantList>
#include <QWebChannel>
#include <QWebEngineView>

class DataThread;
class TradeThread;

/// What a page's CallBridge talks to over the web channel.
class PageBridge : public QObject {
    Q_OBJECT
public:
    Q_INVOKABLE void invokeMethod(const QString &method, const QVariantList &args) { emit methodInvoked(method, args); }

signals:
    void methodInvoked(const QString &method, const QVariantList &args); ///< to the host
    void eventSent(const QString &name, const QVariantList &args);       ///< to the page
};

/// A view that shows a page in a browser. It hands the page's calls to the library, and the library's events to the
/// page.
class PageView : public VarnelCefView {
public:
    explicit PageView(const QUrl &url);
    ~PageView() override;

    QWebEngineView &browser() { return m_browser; }

protected:
    void customEvent(QEvent *event) override;

private:
    void call(const QString &method, const QVariantList &args);

    DataThread *const m_data;   ///< deleted with the view, as a child of it
    TradeThread *const m_trade; ///< the same
    PageBridge m_bridge;
    QWebChannel m_channel;
    QWebEngineView m_browser;
};
