#include "hostcheck/Supervisor.h"

#include <QCoreApplication>
#include <QProcess>
#include <QUuid>

namespace HostCheck {

namespace {

const QString kStart = QLatin1String(kStartCheck);
const QString kEnd = QLatin1String(kEndCheck);

QString endOf(const QProcess &child)
{
    if (child.exitStatus() == QProcess::CrashExit)
        return QStringLiteral("the process crashed");
    return QStringLiteral("the process ended with exit status %1").arg(child.exitCode());
}

} // namespace

Supervisor::Supervisor(const CommandLine &line, const QStringList &arguments, Report &report)
    : m_line(line)
    , m_arguments(arguments)
    , m_token(QUuid::createUuid().toString(QUuid::WithoutBraces))
    , m_report(report)
    , m_pending(line.selected)
{
}

void Supervisor::run()
{
    while (!m_pending.isEmpty() && m_mayGoOn)
        runChild();
    for (const QString &name : qAsConst(m_pending))
        m_report.add({name, Outcome::Skipped, {}, QStringLiteral("the host did not start")});
}

int Supervisor::limit() const
{
    return m_hasStarted ? m_line.timeLimit : m_line.startLimit;
}

void Supervisor::runChild()
{
    QProcess child;
    // What the host prints goes to standard error, so that standard output holds nothing but the report.
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_hasStarted = false;
    m_underWay = kStart;
    m_since.start();
    child.start(QCoreApplication::applicationFilePath(), CommandLine::forChild(m_arguments, m_token, m_pending));
    while (child.state() != QProcess::NotRunning) {
        const qint64 left = limit() - m_since.elapsed();
        if (left <= 0 || !child.waitForReadyRead(int(left))) {
            if (child.state() == QProcess::NotRunning)
                break;
            if (limit() - m_since.elapsed() > 0) {
                child.waitForFinished(int(limit() - m_since.elapsed())); // its output has ended before itself
                continue;
            }
            child.kill();
            child.waitForFinished();
            read(child);
            settle({m_underWay, Outcome::TimedOut, QStringLiteral("an end within %1 seconds").arg(limit() / 1000.0),
                    QStringLiteral("none"), limit()});
            return;
        }
        read(child);
    }
    read(child);
    settleEnd(child);
}

void Supervisor::settleEnd(QProcess &child)
{
    const bool endedWell = child.exitStatus() == QProcess::NormalExit && child.exitCode() == 0;
    if (child.error() == QProcess::FailedToStart) {
        settle({kStart, Outcome::Crashed, {}, QStringLiteral("this program cannot be started again"), 0});
    } else if (m_underWay == kEnd && endedWell) {
        settle({kEnd, Outcome::Ok, {}, {}});
    } else if (!m_underWay.isEmpty()) {
        settle({m_underWay, Outcome::Crashed, {}, endOf(child), m_since.elapsed()});
    } else if (!m_pending.isEmpty() && m_mayGoOn) {
        settle({m_pending.first(), Outcome::Crashed, {}, QStringLiteral("before it began, ") + endOf(child)});
    } else if (!endedWell) {
        printError(QStringLiteral("After the last check %1.\n").arg(endOf(child)));
    }
}

void Supervisor::read(QProcess &child)
{
    while (child.canReadLine()) {
        const QByteArray line = child.readLine();
        const Told told = readTold(line, m_token);
        if (told.kind != Told::Nothing)
            take(told);
        else if (!line.trimmed().isEmpty())
            printError(QString::fromLocal8Bit(line));
    }
}

void Supervisor::take(const Told &told)
{
    m_since.restart();
    if (told.kind == Told::Begin) {
        m_underWay = told.result.name;
        return;
    }
    m_underWay.clear();
    if (told.result.name == kStart)
        m_hasStarted = told.result.outcome == Outcome::Ok;
    settle(told.result);
}

void Supervisor::settle(const Result &result)
{
    const bool isStart = result.name == kStart;
    m_mayGoOn = m_mayGoOn && !(isStart && result.outcome != Outcome::Ok);
    // The start of a second child is told only when it fails.
    if (m_pending.removeAll(result.name) > 0 || (isStart && result.outcome != Outcome::Ok))
        m_report.add(result);
    m_underWay.clear();
}

} // namespace HostCheck
