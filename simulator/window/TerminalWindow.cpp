#include "window/TerminalWindow.h"

#include "gateway/Gateway.h"
#include "terminal/Terminal.h"
#include "traffic/Scope.h"
#include "window/OrderQuestion.h"
#include "window/PageView.h"

#include <QAction>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>
#include <QWebEngineDownloadItem>

namespace sim {

namespace {

constexpr int kClockMs = 200;
constexpr int kTitleLength = 30;

QString ownAddress(const Gateway &gateway, const char *host)
{
    return QStringLiteral("http://%1:%2").arg(QLatin1String(host)).arg(gateway.port());
}

QString tabText(const QString &title)
{
    const QString text = title.size() > kTitleLength ? title.left(kTitleLength) + QStringLiteral("…") : title;
    return QString(text).replace(QLatin1Char('&'), QStringLiteral("&&")); // a single one would underline a letter
}

} // namespace

TerminalWindow::TerminalWindow(Terminal &terminal, Gateway &gateway, const QStringList &origins)
    : m_terminal(terminal)
    , m_gateway(gateway)
    , m_access(m_profile, origins + QStringList{ownAddress(gateway, "127.0.0.1"), ownAddress(gateway, "localhost")})
    , m_asksBeforeOrders(new QAction(QStringLiteral("Ask before orders"), this))
{
    m_tabs.setDocumentMode(true);
    m_tabs.setTabsClosable(true);
    m_tabs.setMovable(true);
    connect(&m_tabs, &QTabWidget::tabCloseRequested, this, &TerminalWindow::closeTab);
    connect(&m_tabs, &QTabWidget::currentChanged, this, &TerminalWindow::showState);
    setCentralWidget(&m_tabs);
    addActions();

    statusBar()->addWidget(&m_state, 1);
    statusBar()->addPermanentWidget(new QLabel(terminal.login().account));
    statusBar()->addPermanentWidget(&m_time);
    auto *const clock = new QTimer(this);
    connect(clock, &QTimer::timeout, this, &TerminalWindow::showTime);
    clock->start(kClockMs);
    showTime();

    connect(&m_profile, &QWebEngineProfile::downloadRequested, this, [this](QWebEngineDownloadItem *item) {
        item->accept(); // saved in the user's folder for downloads
        statusBar()->showMessage(
            QStringLiteral("Saving %1/%2").arg(item->downloadDirectory(), item->downloadFileName()), 10000);
    });
    terminal.askBeforeOrders([this](const std::vector<Order> &orders) {
        const traffic::CallScope none(0); // what happens during the question does not belong to the call
        return !m_asksBeforeOrders->isChecked() || confirmOrders(this, orders);
    });
    resize(1440, 900);
    showState();
}

TerminalWindow::~TerminalWindow()
{
    m_terminal.askBeforeOrders({});
    m_tabs.disconnect(this);
    qDeleteAll(findChildren<PageView *>());       // before their profile
    qDeleteAll(findChildren<QWebEngineView *>()); // the developer tools
}

void TerminalWindow::addActions()
{
    auto *const bar = addToolBar(QStringLiteral("Navigation"));
    bar->setMovable(false);
    const auto add = [&](const QString &text, const QList<QKeySequence> &shortcuts, auto operation) {
        QAction *const action = bar->addAction(text, this, operation);
        action->setShortcuts(shortcuts);
        if (!shortcuts.isEmpty())
            action->setToolTip(QStringLiteral("%1 (%2)").arg(text, shortcuts.first().toString()));
        return action;
    };
    add(QStringLiteral("New tab"), {QKeySequence::AddTab}, [this] {
        addTab();
        m_address.setFocus();
    });
    add(QStringLiteral("Reload"), {QKeySequence(Qt::Key_F5), QKeySequence(QStringLiteral("Ctrl+R"))},
        [this] { reload(); });
    bar->addWidget(&m_address);
    m_address.setPlaceholderText(QStringLiteral("Address of a page, such as http://localhost:5173"));
    connect(&m_address, &QLineEdit::returnPressed, this, [this] { goTo(m_address.text()); });
    add(QStringLiteral("Developer tools"), {QKeySequence(Qt::Key_F12)}, [this] { showDeveloperTools(); });
    m_asksBeforeOrders->setCheckable(true);
    bar->addAction(m_asksBeforeOrders);

    auto *const close = new QAction(this);
    close->setShortcuts(QKeySequence::Close);
    connect(close, &QAction::triggered, this, [this] { closeTab(m_tabs.currentIndex()); });
    addAction(close);
}

PageView &TerminalWindow::open(const QUrl &address)
{
    PageView &view = addTab();
    m_access.allowOwn(address);
    view.browser().load(address);
    return view;
}

PageView &TerminalWindow::addTab()
{
    auto *const view = new PageView(m_profile, m_access, m_gateway, [this] { return addTab().browser().page(); });
    QWebEngineView &browser = view->browser();
    connect(&browser, &QWebEngineView::titleChanged, this, [this, view](const QString &title) {
        m_tabs.setTabText(m_tabs.indexOf(view), tabText(title));
        m_tabs.setTabToolTip(m_tabs.indexOf(view), title);
        showState();
    });
    connect(&browser, &QWebEngineView::iconChanged, this,
            [this, view](const QIcon &icon) { m_tabs.setTabIcon(m_tabs.indexOf(view), icon); });
    connect(&browser, &QWebEngineView::urlChanged, this, &TerminalWindow::showState);
    connect(browser.page(), &QWebEnginePage::windowCloseRequested, this,
            [this, view] { closeTab(m_tabs.indexOf(view)); });
    m_tabs.setCurrentIndex(m_tabs.addTab(view, QStringLiteral("New tab")));
    return *view;
}

void TerminalWindow::closeTab(int index)
{
    QWidget *const widget = m_tabs.widget(index);
    if (!widget)
        return;
    m_tabs.removeTab(index);
    widget->deleteLater(); // Chromium may be calling
}

PageView *TerminalWindow::current() const
{
    return qobject_cast<PageView *>(m_tabs.currentWidget());
}

void TerminalWindow::goTo(const QString &address)
{
    const QUrl url = QUrl::fromUserInput(address);
    PageView *const view = current();
    if (!view) {
        open(url);
        return;
    }
    m_access.allowOwn(url);
    view->browser().load(url);
    view->browser().setFocus();
}

void TerminalWindow::reload()
{
    if (PageView *const view = current())
        view->browser().reload();
}

void TerminalWindow::showDeveloperTools()
{
    PageView *const view = current();
    if (!view)
        return;
    auto *const tools = new QWebEngineView;
    tools->setPage(new QWebEnginePage(&m_profile, tools));
    view->browser().page()->setDevToolsPage(tools->page());
    connect(view, &QObject::destroyed, tools, &QObject::deleteLater);
    const int index = m_tabs.indexOf(view) + 1;
    m_tabs.insertTab(index, tools, QStringLiteral("Developer tools: %1").arg(m_tabs.tabText(m_tabs.indexOf(view))));
    m_tabs.setCurrentIndex(index);
}

void TerminalWindow::showState()
{
    PageView *const view = current();
    const QUrl url = view ? view->browser().url() : QUrl();
    const QString title = view ? view->browser().title() : QString();
    m_address.setText(url.toString());
    m_address.setCursorPosition(0);
    setWindowTitle((title.isEmpty() ? QString() : title + QStringLiteral(" – ")) +
                   QStringLiteral("Terminal simulator"));
    m_state.setText(
        url.isEmpty() || view->hasBridge()
            ? QStringLiteral("A simulation: no order leaves this machine.")
            : QStringLiteral("This page has no CallBridge: its origin is not allowed. --allow-origin lets it in."));
}

void TerminalWindow::showTime()
{
    m_time.setText(m_terminal.now().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")));
}

} // namespace sim
