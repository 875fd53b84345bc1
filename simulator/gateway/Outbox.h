#pragma once

#include "gateway/EventFrame.h"
#include "traffic/Entry.h"

#include <QHash>

#include <list>

namespace sim {

/// The events that wait until one page has received those before them. Use it on one thread.
/// A tick takes the place of the waiting tick of its symbol, so that a page that reads slowly sees the newest prices
/// and not those of long ago. It does not, when the answer to a subscription waits behind that place: the page may
/// count on a tick behind the answer. Nothing else is left out or changes its place.
class Outbox {
public:
    /// Bytes that may wait before a further event. A page that lets more wait has stopped reading.
    static constexpr qint64 kMaxBytes = qint64{16} * 1024 * 1024;

    struct Sent {
        QByteArray text;
        traffic::Entry delivery; ///< for the log, when the text has been written
    };

    /// False when too much waits already; the event is not added then.
    bool add(const EventFrame &frame, const traffic::Entry &delivery = {});

    bool isEmpty() const { return m_waiting.empty(); }

    /// The first event, which waits no more.
    Sent take();

private:
    struct Waiting {
        Sent event;
        QString tickOf;
    };
    using Place = std::list<Waiting>::iterator;

    std::list<Waiting> m_waiting;
    QHash<QString, Place> m_ticks; ///< by symbol: those whose places newer ones may take
    qint64 m_bytes = 0;            ///< of all that wait
};

} // namespace sim
