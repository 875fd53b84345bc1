#include "window/PageView.h"

#include "gateway/EventFrame.h"
#include "gateway/EventLog.h"
#include "gateway/Gateway.h"
#include "gateway/PageConnection.h"
#include "window/BridgeAccess.h"

#include <QCoreApplication>
#include <QPointer>
#include <QVBoxLayout>

namespace sim {

namespace {

/// The way of the events to one page of a view.
class ChannelSocket : public PageSocket {
public:
    ChannelSocket(PageBridge &bridge, const QString &page, int number)
        : m_bridge(bridge), m_page(page), m_number(number)
    {
    }

    int number() const override { return m_number; }

    void send(const QCefEvent &event, const traffic::Entry &delivery) override
    {
        // The web channel belongs to the thread of the view. The bridge lives longer than the connection, and with it
        // the last event.
        QMetaObject::invokeMethod(
            &m_bridge,
            [&bridge = m_bridge, page = m_page, event, delivery] {
                const QString frame = eventFrame(event);
                emit bridge.eventSent(page, frame);
                logDelivery(delivery, frame.toUtf8().size());
            },
            Qt::QueuedConnection);
    }

    void close(int, const QString &) override {} // the page has gone, or sends what only a page with the key can send
    void handled(const CallFrame &) override {}  // nothing waits for that

private:
    PageBridge &m_bridge;
    const QString m_page;
    const int m_number;
};

class BrowserPage : public QWebEnginePage {
public:
    BrowserPage(QWebEngineProfile &profile, QObject *parent, PageView::OpenTab openTab)
        : QWebEnginePage(&profile, parent), m_openTab(std::move(openTab))
    {
    }

protected:
    QWebEnginePage *createWindow(WebWindowType) override { return m_openTab(); }

private:
    const PageView::OpenTab m_openTab;
};

} // namespace

void PageBridge::open(const QString &key, const QString &page)
{
    if (m_view.m_access.isKey(key))
        m_view.later([&view = m_view, page] { view.begin(page); });
}

void PageBridge::send(const QString &key, const QString &page, const QString &frame)
{
    if (m_view.m_access.isKey(key))
        m_view.later([&view = m_view, page, frame] { view.call(page, frame); });
}

PageView::PageView(QWebEngineProfile &profile, const BridgeAccess &access, Gateway &gateway, const OpenTab &openTab)
    : m_access(access), m_gateway(gateway)
{
    auto *const page = new BrowserPage(profile, &m_browser, openTab);
    m_channel.registerObject(QStringLiteral("bridge"), &m_bridge);
    page->setWebChannel(&m_channel);
    m_browser.setPage(page);

    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(&m_browser);

    // A page with the bridge tells of itself, and by that of the end of the page before. Other pages do not.
    connect(&m_browser, &QWebEngineView::urlChanged, this, [this] {
        if (!hasBridge())
            later([this] { end(); });
    });
    connect(&m_browser, &QWebEngineView::renderProcessTerminated, this, [this] { later([this] { end(); }); });
}

PageView::~PageView()
{
    end(); // while this is still a view
}

bool PageView::hasBridge() const
{
    return m_access.isAllowed(m_browser.url());
}

void PageView::later(std::function<void()> task)
{
    QMetaObject::invokeMethod(
        qApp,
        [view = QPointer<PageView>(this), task = std::move(task)] {
            if (view)
                task();
        },
        Qt::QueuedConnection);
}

void PageView::begin(const QString &page)
{
    end();
    m_page = page;
    m_connection = std::make_unique<PageConnection>(
        std::make_shared<ChannelSocket>(m_bridge, page, m_gateway.newPageNumber()), nullptr, this);
}

void PageView::call(const QString &page, const QString &frame)
{
    if (m_connection && page == m_page)
        m_connection->receive(CallFrame::read(frame.toUtf8()));
    // Not even the view may be there any more.
}

void PageView::end()
{
    m_connection.reset();
}

} // namespace sim
