#pragma once

#include "hostcheck/CommandLine.h"
#include "hostcheck/Report.h"
#include "hostcheck/Runner.h"

#include <QElapsedTimer>

class QProcess;

namespace HostCheck {

/// Runs the checks in a child process of this same program. When the child dies or hangs, the check under way is
/// reported so, and a new child goes on with the next.
class Supervisor {
public:
    Supervisor(const CommandLine &line, const QStringList &arguments, Report &report);

    void run();

private:
    void runChild();
    void read(QProcess &child);
    void take(const Told &told);
    void settle(const Result &result);
    void settleEnd(QProcess &child);
    int limit() const;

    const CommandLine &m_line;
    const QStringList m_arguments;
    const QString m_token;
    Report &m_report;
    QStringList m_pending;     ///< without a result yet, in their order
    QString m_underWay;        ///< the check that the child runs; empty between two
    QElapsedTimer m_since;     ///< the child has last told something
    bool m_hasStarted = false; ///< the child now running has started the host
    bool m_mayGoOn = true;
};

} // namespace HostCheck
