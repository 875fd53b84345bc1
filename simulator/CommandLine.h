#pragma once

#include "platform/Scenario.h"
#include "recording/Recording.h"
#include "recording/Replay.h"

#include <QStringList>
#include <QUrl>
#include <QVector>

class QCommandLineParser;

namespace sim {

/// The options of the command line, checked, and the scenario.
struct CommandLine {
    enum Outcome { Run, ShowText, Refuse };

    quint16 port = 8900;
    bool listens = true;        ///< on that port
    bool open = false;          ///< the address, in the user's browser
    bool window = false;        ///< opens one
    bool confirmOrders = false; ///< in the window
    bool isReplay = false;      ///< of the recording
    double speed = 1;
    QString root;
    QString inspector;
    QStringList allowedOrigins;
    QVector<QUrl> pages; ///< to open in the window; none means the simulator's own
    Scenario scenario;
    QByteArray scenarioText;
    Login login;
    QStringList faults;        ///< of the command line, or of the recording
    QString recordTo;          ///< the file of the recording to write; empty for none
    RecordingReader recording; ///< open, for a replay
    QString text; ///< the help, the version, one line about a mistake, or a line for each mistake in the scenario
    Replay::Mode mode = Replay::Timed;

    Outcome parse(const QStringList &arguments);

private:
    QString checkOptions(const QCommandLineParser &parser);
    QString checkAddresses(const QCommandLineParser &parser);
    QString checkRun(const QCommandLineParser &parser);
    QString checkReplay(const QCommandLineParser &parser);
    bool readScenario(const QCommandLineParser &parser);
    QString checkWithScenario(const QCommandLineParser &parser);
    QString addFaults(const QStringList &texts);
    QString logIn(const QString &account, const QString &source);
};

} // namespace sim
