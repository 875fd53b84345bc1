#pragma once

#include <QString>

namespace sim {

/// On standard output, at once.
void print(const QString &text);

/// A line on standard error, behind the name of the program.
void printError(const QString &sentence);

/// The same for lines that say themselves what they are about.
void printErrorLines(const QString &lines);

} // namespace sim
