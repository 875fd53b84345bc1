#pragma once

#include <QStringList>
#include <QVariantList>

#include <chrono>
#include <optional>

class QCommandLineParser;

namespace sim {

/// What the command line of varnel-call asks for.
struct CallOptions {
    enum Outcome { Run, ShowText, Refuse };

    quint16 port = 8900;
    QString method;                              ///< of the call; empty when only events are followed
    QVariantList args;                           ///< of the call, behind its uuid
    QString command;                             ///< to control the simulator with
    bool isControl = false;                      ///< a command, or none to see the state
    QStringList events;                          ///< to be followed
    QString symbols;                             ///< to subscribe to before, with commas between them
    std::optional<int> count;                    ///< of events; without it they are followed until Ctrl-C
    std::optional<std::chrono::seconds> timeout; ///< for a reply, and for each event that is followed
    QString text;                                ///< the help, the version, or one line about a mistake

    Outcome parse(const QStringList &arguments);

private:
    QString check(const QCommandLineParser &parser);
};

} // namespace sim
