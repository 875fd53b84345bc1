#include "CheckProcess.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <algorithm>

std::map<std::string, std::string> CheckRun::words() const
{
    static const QRegularExpression line(QStringLiteral("^(ok|FAILED|CRASHED|TIMED OUT|skipped) +([a-z.-]+)"),
                                         QRegularExpression::MultilineOption);
    std::map<std::string, std::string> words;
    QRegularExpressionMatchIterator lines = line.globalMatch(QString::fromStdString(output));
    while (lines.hasNext()) {
        const QRegularExpressionMatch match = lines.next();
        words[match.captured(2).toStdString()] = match.captured(1).toStdString();
    }
    return words;
}

std::string CheckRun::word(const std::string &check) const
{
    return words()[check];
}

CheckRun::Names CheckRun::checks() const
{
    return checksThat({"ok", "FAILED", "CRASHED", "TIMED OUT", "skipped"});
}

CheckRun::Names CheckRun::checksThat(std::initializer_list<std::string> wanted) const
{
    Names checks;
    for (const auto &[check, word] : words()) {
        if (std::find(wanted.begin(), wanted.end(), word) != wanted.end())
            checks.push_back(check);
    }
    return checks;
}

std::string CheckRun::entry(const std::string &check) const
{
    const QRegularExpression entry(QStringLiteral("^[A-Zoks][^\\n]* %1\\b[^\\n]*(\\n {11}[^\\n]*)*")
                                       .arg(QRegularExpression::escape(QString::fromStdString(check))),
                                   QRegularExpression::MultilineOption);
    return entry.match(QString::fromStdString(output)).captured(0).toStdString();
}

CheckRun runProgram(const std::string &program, const std::string &arguments, const std::string &fault)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("VARNEL_HOST_FAULT"), QString::fromStdString(fault));
    process.setProcessEnvironment(environment);
    process.start(QString::fromStdString(program),
                  QString::fromStdString(arguments).split(QLatin1Char(' '), Qt::SkipEmptyParts));
    constexpr int kPatienceMs = 50000; // below the time limit of a test
    EXPECT_TRUE(process.waitForFinished(kPatienceMs)) << qPrintable(process.errorString());
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    CheckRun run;
    run.exitStatus = process.exitCode();
    run.output = process.readAllStandardOutput().replace("\r", "").toStdString();
    run.errors = process.readAllStandardError().replace("\r", "").toStdString();
    return run;
}

CheckRun runSample(const std::string &arguments, const std::string &fault)
{
    return runProgram(SAMPLE_CHECK, arguments, fault);
}
