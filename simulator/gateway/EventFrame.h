#pragma once

#include "QCefEvent.h"

#include <optional>

namespace sim {

/// The text frame for an event: {"args":[…],"event":"…"}
QString eventFrame(const QCefEvent &event);

/// Whether the event answers a call; otherwise it is a push.
bool isReply(const QCefEvent &event);

/// The uuid in a reply. Empty when it has none, or one of some hundred characters.
QString uuidOf(const QCefEvent &reply);

/// An event as pages receive it. Copies share the text.
struct EventFrame {
    QByteArray text; ///< UTF-8

    QString tickOf; ///< the symbol of a tick, otherwise empty

    /// Ticks that come later must not overtake it: the answer to a subscription.
    bool holdsTicksBack = false;
};

/// Makes the frames of events, and the frame of a push to many pages once. Use one on one thread.
class EventFrames {
public:
    const EventFrame &of(const QCefEvent &event);

private:
    std::optional<QCefEvent> m_event; ///< the last one
    EventFrame m_frame;               ///< its frame
};

} // namespace sim
