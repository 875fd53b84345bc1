#pragma once

#include "platform/Scenario.h"

#include <QStringList>

class QCommandLineParser;

namespace sim {

/// The options of the command line, checked, and the scenario.
struct CommandLine {
    enum Outcome { Run, ShowText, Refuse };

    quint16 port = 8900;
    double speed = 1;
    QString root;
    QStringList allowedOrigins;
    Scenario scenario;
    Login login;
    QString text; ///< the help, the version, one line about a mistake, or a line for each mistake in the scenario

    Outcome parse(const QStringList &arguments);

private:
    QString checkOptions(const QCommandLineParser &parser);
    bool readScenario(const QCommandLineParser &parser);
    QString checkWithScenario(const QCommandLineParser &parser);
};

} // namespace sim
