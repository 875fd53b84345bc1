#pragma once

#include <QByteArray>
#include <QString>

#include <deque>

class VarnelCefView;

/// The calls to the strategy platform that are not answered yet. A new view may lie at the address of one that has
/// ended; this class recognises the answers to the ended view's calls, so that the new view does not get them.
/// Pointers are compared, never followed. Not thread-safe: WebMsgCenter guards it.
class StrategyCalls {
public:
    /// How many calls are remembered, of all views together. The oldest is forgotten first: some answers never come.
    static constexpr int capacity = 4096;

    /// Remembers a call of the view's page; the event replyEvent will answer it.
    void add(VarnelCefView *view, const QString &replyEvent, const QString &uuid);

    /// Forgets the call that an answer belongs to. Returns true when the view that made the call has ended; false when
    /// it has not, or when no such call is remembered. If several calls are alike, the answer belongs to the oldest,
    /// but to one of an ended view that answerLost() has marked only if there is no other.
    bool takeAndTellIfEnded(VarnelCefView *view, const QString &replyEvent, const QString &uuid);

    /// An answer was dropped unread: it may have been the answer to any of the calls.
    void answerLost();

    /// Marks the calls of a view that has ended; from now on a view at this address is another one.
    void viewEnded(VarnelCefView *view);

private:
    struct Call {
        VarnelCefView *view;
        QByteArray key; ///< of fixed size, so that a page cannot fill the memory with long uuids
        bool viewHasEnded = false;
        bool answerMayBeLost = false;
    };

    std::deque<Call> m_calls; ///< oldest first
};
