#include "CheckProcess.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <algorithm>

QMap<QString, QString> CheckRun::words() const
{
    static const QRegularExpression line(QStringLiteral("^(ok|FAILED|CRASHED|TIMED OUT|skipped) +([a-z.-]+)"),
                                         QRegularExpression::MultilineOption);
    QMap<QString, QString> words;
    QRegularExpressionMatchIterator lines = line.globalMatch(output);
    while (lines.hasNext()) {
        const QRegularExpressionMatch match = lines.next();
        words.insert(match.captured(2), match.captured(1));
    }
    return words;
}

QStringList CheckRun::checksThat(std::initializer_list<const char *> wanted) const
{
    QStringList checks;
    const QMap<QString, QString> all = words();
    for (auto check = all.cbegin(); check != all.cend(); ++check) {
        const auto isIt = [&](const char *word) { return *check == QLatin1String(word); };
        if (std::any_of(wanted.begin(), wanted.end(), isIt))
            checks.append(check.key());
    }
    return checks;
}

CheckRun runProgram(const char *program, const QStringList &arguments, const char *fault)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("VARNEL_HOST_FAULT"), QString::fromLatin1(fault));
    process.setProcessEnvironment(environment);
    process.start(QString::fromLocal8Bit(program), arguments);
    constexpr int kPatienceMs = 50000; // below the time limit of a test
    EXPECT_TRUE(process.waitForFinished(kPatienceMs)) << qPrintable(process.errorString());
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    CheckRun run;
    run.exitStatus = process.exitCode();
    run.output = QString::fromLocal8Bit(process.readAllStandardOutput()).remove(QLatin1Char('\r'));
    run.errors = QString::fromLocal8Bit(process.readAllStandardError()).remove(QLatin1Char('\r'));
    return run;
}

CheckRun runSample(const QString &arguments, const char *fault)
{
    return runProgram(SAMPLE_CHECK, arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts), fault);
}
