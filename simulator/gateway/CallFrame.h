#pragma once

#include <QByteArray>
#include <QString>
#include <QVariantList>

namespace sim {

/// What one frame of a page asks for: a call, {"invoke":"…","args":[…]}, or the end of the connection, because the
/// frame is none. A plain value.
struct CallFrame {
    static constexpr int kMaxSize = 1024 * 1024; ///< bytes of a frame

    QString method;
    QVariantList args;
    int closeCode = 0;   ///< of the WebSocket protocol, for a frame that is no call; 0 for a call
    QString closeReason; ///< for a person
    qint64 size = 0;     ///< bytes

    static CallFrame read(const QByteArray &text);
    static CallFrame binary();  ///< not a text
    static CallFrame tooLong(); ///< over kMaxSize
};

} // namespace sim
