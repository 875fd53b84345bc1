#pragma once

#include "platform/Command.h"

#include <QJsonObject>
#include <QJsonValue>

namespace sim {

class Terminal;

/// What one frame of a peer that controls the simulator asks for: {"command":"speed 10","id":7}. A plain value.
struct ControlFrame {
    QJsonValue id; ///< any value of the peer, for the result; its numbers are doubles, as in JavaScript
    Command command;
    QString problem; ///< why there is no command; empty when there is one

    static ControlFrame read(const QByteArray &text);
};

/// The result of the frame with that id. problem: why the command was not carried out; empty when it was.
QByteArray resultFrame(const QJsonValue &id, const QString &problem);

/// What the peer is told when it changes: all but the time.
QJsonObject controlState(Terminal &terminal);

/// The state together with the time of this moment.
QByteArray stateFrame(QJsonObject state, const Terminal &terminal);

} // namespace sim
