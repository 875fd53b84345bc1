#include "hostcheck/Report.h"

#include <QSaveFile>
#include <QXmlStreamWriter>

#include <algorithm>
#include <cstdio>

namespace HostCheck {

namespace {

struct Word {
    Outcome outcome;
    const char *inLine;
    const char *inSummary;
};

const Word words[] = {
    {Outcome::Ok, "ok", "ok"},
    {Outcome::Failed, "FAILED", "failed"},
    {Outcome::Crashed, "CRASHED", "crashed"},
    {Outcome::TimedOut, "TIMED OUT", "timed out"},
    {Outcome::Skipped, "skipped", "skipped"},
};

const Word &wordFor(Outcome outcome)
{
    return *std::find_if(std::begin(words), std::end(words),
                         [outcome](const Word &word) { return word.outcome == outcome; });
}

bool isFailure(Outcome outcome)
{
    return outcome != Outcome::Ok && outcome != Outcome::Skipped;
}

/// What is known about a failure, one line each.
QStringList explanation(const Result &result)
{
    QStringList lines;
    if (const Check *check = findCheck(result.name))
        lines.append(QString::fromUtf8(check->breaks));
    if (!result.expected.isEmpty())
        lines.append(QStringLiteral("expected: %1").arg(result.expected));
    if (!result.seen.isEmpty())
        lines.append(QStringLiteral("seen: %1").arg(result.seen));
    return lines;
}

QString lineOf(const Result &result)
{
    QString text = QString::fromLatin1(wordFor(result.outcome).inLine).leftJustified(11) + result.name;
    if (!isFailure(result.outcome))
        return result.seen.isEmpty() ? text : QStringLiteral("%1: %2").arg(text, result.seen);
    const QStringList lines = explanation(result);
    for (const QString &line : lines)
        text += QLatin1Char('\n') + QString(11, QLatin1Char(' ')) + line;
    return text;
}

void write(FILE *stream, const QString &text)
{
    std::fputs(text.toLocal8Bit().constData(), stream);
    std::fflush(stream);
}

void writeCase(QXmlStreamWriter &xml, const Result &result)
{
    xml.writeStartElement(QStringLiteral("testcase"));
    xml.writeAttribute(QStringLiteral("classname"), QStringLiteral("hostcheck"));
    xml.writeAttribute(QStringLiteral("name"), result.name);
    xml.writeAttribute(QStringLiteral("time"), QString::number(double(result.milliseconds) / 1000));
    if (result.outcome == Outcome::Skipped) {
        xml.writeStartElement(QStringLiteral("skipped"));
        xml.writeAttribute(QStringLiteral("message"), result.seen);
        xml.writeEndElement();
    } else if (isFailure(result.outcome)) {
        xml.writeStartElement(result.outcome == Outcome::Failed ? QStringLiteral("failure") : QStringLiteral("error"));
        xml.writeAttribute(QStringLiteral("message"), explanation(result).join(QStringLiteral("; ")));
        xml.writeEndElement();
    }
    xml.writeEndElement();
}

} // namespace

void print(const QString &text)
{
    write(stdout, text);
}

void printError(const QString &text)
{
    write(stderr, text);
}

void Report::add(const Result &result)
{
    m_results.append(result);
    print(lineOf(result) + QLatin1Char('\n'));
}

int Report::count(Outcome outcome) const
{
    return int(std::count_if(m_results.begin(), m_results.end(),
                             [outcome](const Result &result) { return result.outcome == outcome; }));
}

bool Report::hasFailure() const
{
    return std::any_of(m_results.begin(), m_results.end(),
                       [](const Result &result) { return isFailure(result.outcome); });
}

void Report::printSummary() const
{
    QStringList parts;
    for (const Word &word : words) {
        if (const int number = count(word.outcome))
            parts.append(QStringLiteral("%1 %2").arg(number).arg(QLatin1String(word.inSummary)));
    }
    print(QStringLiteral("\n%1 checks: %2\n").arg(m_results.size()).arg(parts.join(QStringLiteral(", "))));
}

bool Report::writeJUnit(const QString &fileName) const
{
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QXmlStreamWriter xml(&file);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("testsuite"));
    xml.writeAttribute(QStringLiteral("name"), QStringLiteral("varnel-host-check"));
    xml.writeAttribute(QStringLiteral("tests"), QString::number(m_results.size()));
    xml.writeAttribute(QStringLiteral("failures"), QString::number(count(Outcome::Failed)));
    xml.writeAttribute(QStringLiteral("errors"), QString::number(count(Outcome::Crashed) + count(Outcome::TimedOut)));
    xml.writeAttribute(QStringLiteral("skipped"), QString::number(count(Outcome::Skipped)));
    for (const Result &result : m_results)
        writeCase(xml, result);
    xml.writeEndDocument();
    return file.commit();
}

} // namespace HostCheck
