#include "hostcheck/Runner.h"

#include "hostcheck/CommandLine.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>

namespace HostCheck {

namespace {

const QString kBegin = QStringLiteral("begin");
const QString kEnd = QStringLiteral("end");
const QString kOutcome = QStringLiteral("outcome");
const QString kExpected = QStringLiteral("expected");
const QString kSeen = QStringLiteral("seen");
const QString kMilliseconds = QStringLiteral("ms");

void tell(const QString &token, const QJsonObject &what)
{
    // The host may have left an unfinished line behind, so that the line begins with a line break.
    const QByteArray line = '\n' + token.toUtf8() + ' ' + QJsonDocument(what).toJson(QJsonDocument::Compact) + '\n';
    std::fwrite(line.constData(), 1, size_t(line.size()), stdout);
    std::fflush(stdout);
}

} // namespace

void runChecks(const QStringList &checks, const Options &options, const KnownValues &given,
               const QStringList &hostArguments, const Listener &listener)
{
    KnownValues known = options.known;
    QString problem;
    listener.begins(QLatin1String(kStartCheck));
    Result started;
    started.name = QLatin1String(kStartCheck);
    if (options.start)
        problem = options.start(hostArguments, known);
    if (!problem.isEmpty()) {
        started.outcome = Outcome::Failed;
        started.expected = QStringLiteral("the host starts");
        started.seen = problem;
    }
    listener.ends(started);
    if (!problem.isEmpty())
        return;
    applyGiven(given, known);
    for (const QString &name : checks) {
        const Check *check = findCheck(name);
        if (!check || name == QLatin1String(kStartCheck))
            continue;
        listener.begins(name);
        const Result result = runCheck(*check, known);
        if (name != QLatin1String(kEndCheck))
            listener.ends(result);
    }
    if (options.stop)
        options.stop();
}

Listener listenerForParent(const QString &token)
{
    return {[token](const QString &check) {
                tell(token, {{kBegin, check}});
            },
            [token](const Result &result) {
                tell(token, {{kEnd, result.name},
                             {kOutcome, int(result.outcome)},
                             {kExpected, result.expected},
                             {kSeen, result.seen},
                             {kMilliseconds, result.milliseconds}});
            }};
}

Told readTold(const QByteArray &line, const QString &token)
{
    const QByteArray beginning = token.toUtf8() + ' ';
    if (!line.startsWith(beginning))
        return {};
    const QJsonObject what = QJsonDocument::fromJson(line.mid(beginning.size()).trimmed()).object();
    Told told;
    if (what.contains(kBegin)) {
        told.kind = Told::Begin;
        told.result.name = what.value(kBegin).toString();
    } else if (what.contains(kEnd)) {
        told.kind = Told::End;
        told.result = {what.value(kEnd).toString(), Outcome(what.value(kOutcome).toInt()),
                       what.value(kExpected).toString(), what.value(kSeen).toString(),
                       qint64(what.value(kMilliseconds).toDouble())};
    }
    return told;
}

} // namespace HostCheck
