#pragma once

#include "traffic/Entry.h"

#include <QByteArray>
#include <QDateTime>
#include <QFile>
#include <QStringList>

#include <optional>

namespace sim {

// A recording is a text of lines, each a JSON object: a head, then what passed, in order. docs/recording.md describes
// it.

/// What a run began with: the first line of a recording. A plain value.
struct RecordingHead {
    /// From version 2 on a recording has the commands, and the faults of the command line. Version 1 is still read.
    static constexpr int kVersion = 2;

    QString simulator;   ///< its version
    QByteArray scenario; ///< the text of the scenario's file
    quint64 seed = 0;    ///< of the market
    double speed = 1;
    QString login;       ///< the account
    QByteArray settings; ///< the login's settings file
    QStringList faults;  ///< in addition to those of the scenario, as on the command line
};

/// Something that passed: every other line. A plain value.
/// Pages, calls, commands and time decide all else. So what changes the world in another way while it runs has to
/// become a kind of its own: entered in the log of the traffic at the exchange time at which it acts (Entry.h),
/// translated in Recording.cpp (kindOf), and made again in Replay::isDue() and play().
struct RecordedEntry {
    enum Kind { PageOpened, PageClosed, Call, Reply, Push, HostRequest, HostAnswer, HostEvent, Quote, Command };

    Kind kind = Quote;
    QDateTime time; ///< at the exchange
    int page = 0;   ///< its number, 0 for none
    QString name = {};
    QString uuid = {};
    QVariantList args = {};
    bool isInCall = false; ///< a command that acted while a slow server held the call before it
    int line = 0;          ///< its number
};

QByteArray recordingLine(const RecordingHead &head);

/// Empty for what is not recorded.
QByteArray recordingLine(const traffic::Entry &entry);

/// Reads a recording line by line. A last line that is not whole ends it, because the simulator may have been killed.
class RecordingReader {
public:
    /// Opens the file and reads its head. On failure returns false, and error is one line with the place.
    bool open(const QString &fileName, QString &error);

    const RecordingHead &head() const { return m_head; }

    /// The next entry; nothing at the end, and when the line is broken: then error says so.
    std::optional<RecordedEntry> next(QString &error);

    /// The number of the line that was read last, from 1.
    int line() const { return m_line; }

    /// The highest number of a page, as far as the file can be read. Reads the file once more.
    int lastPage() const;

    QString fileName() const { return m_file.fileName(); }

    /// For messages: the file and its first line.
    QString placeOfHead() const { return fileName() + QStringLiteral(": line 1: "); }

private:
    std::optional<QJsonObject> readLine(QString &error);

    QFile m_file;
    RecordingHead m_head;
    int m_line = 0;
};

} // namespace sim
