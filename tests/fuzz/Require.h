#pragma once

#include <QByteArray>

#include <cstdio>
#include <cstdlib>

/// Ends the process, which the fuzzer takes for a finding, when something does not hold that always must. problem: for
/// a person.
inline void require(bool holds, const QByteArray &problem)
{
    if (holds)
        return;
    std::fprintf(stderr, "%s\n", problem.constData());
    std::abort();
}
