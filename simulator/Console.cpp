#include "Console.h"

#include <cstdio>

namespace sim {

namespace {

void write(std::FILE *stream, const QString &text)
{
    std::fputs(text.toLocal8Bit().constData(), stream);
    std::fflush(stream);
}

} // namespace

void print(const QString &text)
{
    write(stdout, text);
}

void printError(const QString &sentence)
{
    write(stderr, QStringLiteral("varnel-simulator: %1\n").arg(sentence));
}

void printErrorLines(const QString &lines)
{
    write(stderr, lines + QLatin1Char('\n'));
}

} // namespace sim
