#pragma once

#include <QSet>
#include <QString>

class QUrl;
class QWebEngineProfile;

namespace sim {

/// Which pages of the window get window.CallBridge: those of some origins, and no others, because pages can place
/// orders. Made and used on the user-interface thread.
///
/// Every page can send messages over the web channel of its view. So a message counts only with the key, which stands
/// in the script that the profile runs before the scripts of a page, and which that script keeps to itself.
class BridgeAccess {
public:
    /// origins: such as http://localhost:5173.
    BridgeAccess(QWebEngineProfile &profile, const QStringList &origins);

    /// Lets the pages of that page's origin in, too, if it is one of this machine: called for an address that the user
    /// has typed.
    void allowOwn(const QUrl &page);

    bool isAllowed(const QUrl &page) const;
    bool isKey(const QString &text) const { return text == m_key; }

private:
    void putIntoProfile() const;

    QWebEngineProfile &m_profile;
    const QString m_key; ///< nobody can guess it
    QSet<QString> m_origins;
};

} // namespace sim
