#pragma once

#include "platform/Scenario.h"

#include <QStringList>
#include <QUrl>
#include <QVector>

class QCommandLineParser;

namespace sim {

/// The options of the command line, checked, and the scenario.
struct CommandLine {
    enum Outcome { Run, ShowText, Refuse };

    quint16 port = 8900;
    double speed = 1;
    QString root;
    QString inspector;
    bool open = false; ///< the address, in the user's browser
    QStringList allowedOrigins;
    bool window = false;
    QVector<QUrl> pages; ///< to open in the window; none means the simulator's own
    bool confirmOrders = false;
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
