#pragma once

#include "hostcheck/Check.h"

#include <QStringList>

namespace HostCheck {

/// What the command line asks for.
struct CommandLine {
    enum Action { Run, List, ShowText, Refuse };

    Action action = Run;
    QString text;              ///< of ShowText and Refuse
    QStringList selected;      ///< names of checks, in the order in which they run
    QString junitFile;         ///< empty for none
    int timeLimit = 10000;     ///< of one check, in milliseconds
    int startLimit = 120000;   ///< of the host's start, in milliseconds
    bool isInProcess = false;  ///< run in this process, without a child
    QString childToken;        ///< not empty in a child: marks its reports
    KnownValues known;         ///< only those that were given
    QStringList hostArguments; ///< what follows "--"

    /// Whether arguments are those of a process that runs checks itself.
    static bool runsChecks(int argc, char *argv[]);

    static CommandLine parse(const QStringList &arguments);

    /// The arguments for a child of this process that runs these checks. token: marks its reports.
    static QStringList forChild(const QStringList &arguments, const QString &token, const QStringList &checks);
};

/// Puts the values that were given into known.
void applyGiven(const KnownValues &given, KnownValues &known);

/// One entry for each check: its name, what it needs, and what breaks.
QString listOfChecks();

} // namespace HostCheck
