#pragma once

#include "platform/Scenario.h"

#include <QStringList>

class QCommandLineParser;

namespace sim {

/// What the command line asks for, checked and with the scenario read.
struct CommandLine {
    enum Outcome { Run, ShowText, Refuse };

    quint16 port = 8900;
    double speed = 1;
    QString root;
    QStringList allowedOrigins;
    Scenario scenario;
    Login login;
    QString text; ///< help or version to show, or the one line that tells what is wrong

    Outcome parse(const QStringList &arguments);

private:
    QString check(const QCommandLineParser &parser);
};

} // namespace sim
