#pragma once

#include <QString>
#include <QVariantList>

namespace sim::traffic {

/// One thing that has passed between pages, library and terminal. A plain value: copies share texts and arguments.
/// A field that a kind does not name keeps its default.
struct Entry {
    enum Kind {
        PageOpened, ///< page
        PageClosed, ///< page
        Call,       ///< page, name (the method), uuid, args, size
        CallDone,   ///< page, name, uuid, of (the call), isHandled, duration; args: how often the library has called
                    ///< each operation of the host, by its name
        Event,      ///< page, name, uuid (of a reply), args, isReply
        EventDelivered, ///< page, name, uuid, of (the event), size, duration
        HostCall,       ///< name (the operation); of a page's call only the first call of each operation
        HostRequest,    ///< on the bus: name (the type), messageId, args (the fields)
        HostAnswer,     ///< on the bus: name, messageId (of the request), args (the first records), count
        HostEvent,      ///< on the bus: name, messageId, args (the fields)
        Quote,          ///< name (the symbol)
        Command, ///< name (its text), call (of a page, if it acted while a slow server held one); given by a person
    };

    Kind kind = Call;
    int page = 0; ///< the number of the page; 0 for none
    QString name = {};
    QString uuid = {};
    QVariantList args = {};
    QString messageId = {}; ///< of a message on the bus
    bool isReply = false;   ///< the event answers a call; otherwise it is a push
    bool isHandled = false; ///< the method is one that the library knows
    qint64 size = 0;        ///< bytes of the WebSocket message
    qint64 duration = 0;    ///< µs that the call held its thread, or from the broadcast to the end of writing
    int count = 0;          ///< of all records
    quint64 of = 0;         ///< the number of the entry that this one ends

    // Set by the log
    quint64 number = 0;      ///< from 1, without gaps
    qint64 time = 0;         ///< µs since the log began
    qint64 exchangeTime = 0; ///< ms since 1970
    quint64 call = 0;        ///< the number of the call to which this belongs, also of its own entry; 0 for none
};

} // namespace sim::traffic
