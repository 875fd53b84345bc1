#include "hostcheck/Probe.h"
#include "hostcheck/checks/Tables.h"

// The first and the last check. The host's start is the runner's work, and the parent process sees how this one ends.

namespace HostCheck {

namespace {

void starts(const KnownValues &) {}

/// Leaves what the library leaves: a presenter, and a connection to the quotes, that end with the static objects.
void endsWithTheProcess(const KnownValues &)
{
    static const Probe probe;
    Q_UNUSED(probe)
}

} // namespace

CheckTable hostStartChecks()
{
    return {{kStartCheck, "Nothing else can be checked.", starts}};
}

CheckTable hostEndChecks()
{
    return {{kEndCheck,
             "The terminal crashes or hangs when it is closed, because the library's presenter is a static object and "
             "ends after the QApplication.",
             endsWithTheProcess}};
}

} // namespace HostCheck
