#pragma once

#include "hostcheck/Check.h"

#include <functional>

namespace HostCheck {

/// Who is told how the checks of this process go.
struct Listener {
    std::function<void(const QString &check)> begins;
    std::function<void(const Result &result)> ends;
};

/// Starts the host in this process, runs the checks and stops the host. given: the known values of the command line.
/// The end of the check kEndCheck is not told: only the parent sees how a process ends.
void runChecks(const QStringList &checks, const Options &options, const KnownValues &given,
               const QStringList &hostArguments, const Listener &listener);

/// A listener that tells the parent on standard output, in lines that begin with the token.
Listener listenerForParent(const QString &token);

/// What such a line tells.
struct Told {
    enum Kind { Nothing, Begin, End };
    Kind kind = Nothing;
    Result result; ///< for Begin, only the name
};
Told readTold(const QByteArray &line, const QString &token);

} // namespace HostCheck
