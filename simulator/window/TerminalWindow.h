#pragma once

#include "window/BridgeAccess.h"

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QTabWidget>
#include <QUrl>
#include <QWebEngineProfile>

namespace sim {

class Gateway;
class PageView;
class Terminal;

/// The terminal's window: pages in tabs, each in a view of its own. Made and destroyed by main on the user-interface
/// thread, while terminal and gateway exist.
class TerminalWindow : public QMainWindow {
    Q_OBJECT
public:
    /// origins: of pages that get the bridge, in addition to the gateway's own.
    TerminalWindow(Terminal &terminal, Gateway &gateway, const QStringList &origins);

    /// Ends all pages.
    ~TerminalWindow() override;

    /// Opens the page in a new tab. Used for addresses that the user has named: a page of this machine gets the bridge.
    PageView &open(const QUrl &address);

    QTabWidget &tabs() { return m_tabs; }
    void closeTab(int index);

    /// Whether the user is asked before orders are placed.
    void setAsksBeforeOrders(bool asks) { m_asksBeforeOrders->setChecked(asks); }

private:
    PageView &addTab();
    PageView *current() const; ///< null for a tab that shows no page, and without a tab
    void goTo(const QString &address);
    void reload();
    void showDeveloperTools();
    void showState();
    void showTime();
    void addActions();

    Terminal &m_terminal;
    Gateway &m_gateway;
    QWebEngineProfile m_profile; ///< keeps nothing on disk
    BridgeAccess m_access;
    QTabWidget m_tabs;
    QLineEdit m_address;
    QLabel m_state;
    QLabel m_time;
    QAction *m_asksBeforeOrders;
};

} // namespace sim
