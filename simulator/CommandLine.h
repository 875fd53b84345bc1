#pragma once

#include "platform/Scenario.h"
#include "recording/Recording.h"
#include "recording/Replay.h"

#include <QStringList>

class QCommandLineParser;

namespace sim {

/// The options of the command line, checked, and the scenario.
struct CommandLine {
    enum Outcome { Run, ShowText, Refuse };

    quint16 port = 8900;
    bool listens = true; ///< on that port
    double speed = 1;
    QString root;
    QStringList allowedOrigins;
    Scenario scenario;
    QByteArray scenarioText;
    Login login;
    QString recordTo;          ///< the file of the recording to write; empty for none
    bool isReplay = false;     ///< of this recording
    RecordingReader recording; ///< open
    Replay::Mode mode = Replay::Timed;
    QString text; ///< the help, the version, or one line about a mistake

    Outcome parse(const QStringList &arguments);

private:
    QString check(const QCommandLineParser &parser);
    QString checkReplay(const QCommandLineParser &parser);
    QString checkScenario(const QCommandLineParser &parser);
    QString logIn(const QString &account);
};

} // namespace sim
