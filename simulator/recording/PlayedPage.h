#pragma once

#include "recording/Recording.h"

#include <QStringList>

#include <deque>
#include <functional>
#include <memory>

namespace sim {

class PageConnection;

/// A recorded page that makes its calls again: a page without browser and network. User-interface thread only.
class PlayedPage {
public:
    struct Reply {
        QString name;
        QStringList args;
        QString uuid;
        bool cameDuringCall; ///< and not later
    };

    /// whenAnswered is called when there is a new reply.
    PlayedPage(int number, std::function<void()> whenAnswered);

    /// Closes the page.
    ~PlayedPage();

    void call(const RecordedEntry &call);

    /// The oldest reply of that name that was not taken yet.
    std::optional<Reply> take(const QString &name);

    /// The oldest of those that came during their calls and were not taken yet.
    const Reply *untaken() const;

private:
    class Socket;

    const std::function<void()> m_whenAnswered;
    std::deque<Reply> m_replies;
    bool m_isInCall = false;
    std::unique_ptr<PageConnection> m_connection; ///< last: when it ends, it uses the others
};

} // namespace sim
