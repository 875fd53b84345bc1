#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

#include <initializer_list>

/// One run of a host's check.
struct CheckRun {
    int exitStatus = -1;
    QString output; ///< without the errors
    QString errors;

    /// The word of each check that has a line: "ok", "FAILED", "CRASHED", "TIMED OUT" or "skipped".
    QMap<QString, QString> words() const;

    /// The checks with one of these words.
    QStringList checksThat(std::initializer_list<const char *> words) const;

    /// Failed, crashed or timed out.
    QStringList broken() const { return checksThat({"FAILED", "CRASHED", "TIMED OUT"}); }
};

/// Runs the sample host's check. arguments: separated by blanks. fault: of the sample host; empty for none.
CheckRun runSample(const QString &arguments, const char *fault = "");

/// Runs another program.
CheckRun runProgram(const char *program, const QStringList &arguments, const char *fault = "");
