#pragma once

#include "hostcheck/Check.h"

#include <QList>

namespace HostCheck {

/// Prints each result as it comes, and the summary. One for a run of the program.
class Report {
public:
    void add(const Result &result);
    void printSummary() const;

    bool hasFailure() const;

    /// Returns false when the file cannot be written.
    bool writeJUnit(const QString &fileName) const;

private:
    int count(Outcome outcome) const;

    QList<Result> m_results;
};

/// Prints the text on standard output, or on standard error.
void print(const QString &text);
void printError(const QString &text);

} // namespace HostCheck
