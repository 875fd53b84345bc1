#include "recording/Recording.h"
#include "recording/Recorder.h"
#include "traffic/Log.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace sim;
using traffic::Entry;

namespace {

RecordingHead head()
{
    RecordingHead head;
    head.simulator = QStringLiteral("1.2.3");
    head.scenario = "{\"name\": \"甲\"}\n";
    head.seed = std::numeric_limits<quint64>::max();
    head.speed = 0.5;
    head.login = QStringLiteral("T1");
    head.settings = "[General]\nk=\"v\"\n";
    head.faults = QStringList{QStringLiteral("refuse-orders=2"), QStringLiteral("silent-klines")};
    return head;
}

Entry call()
{
    Entry entry;
    entry.kind = Entry::Call;
    entry.page = 3;
    entry.name = QStringLiteral("Data_a_REQ");
    entry.uuid = QStringLiteral("u");
    entry.args = {QStringLiteral("u"),
                  Q_INT64_C(9007199254740991),
                  1.5,
                  true,
                  QVariant::fromValue(nullptr),
                  QVariantList{QStringLiteral("\u2028 \"甲\"\n"), QStringLiteral("\ufeff甲")},
                  QVariantMap{{QStringLiteral("k"), 1}}};
    entry.exchangeTime = QDateTime(QDate(2025, 3, 3), QTime(10, 0, 1, 7), Qt::UTC).toMSecsSinceEpoch();
    return entry;
}

Entry ofKind(Entry::Kind kind, bool isReply = false)
{
    Entry entry;
    entry.kind = kind;
    entry.isReply = isReply;
    return entry;
}

class RecordingTest : public testing::Test {
protected:
    QString write(const QByteArray &text)
    {
        QFile file(folder.filePath(QStringLiteral("r.jsonl")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        return file.fileName();
    }

    /// Why a recording with that text cannot be read, without the name of the file; empty for a good one.
    QString problemOf(const QByteArray &text)
    {
        const QString name = write(text);
        RecordingReader reader;
        QString error;
        if (reader.open(name, error)) {
            while (reader.next(error)) {
            }
        }
        return error.remove(name + QStringLiteral(": "));
    }

    QTemporaryDir folder;
    RecordingReader reader;
    QString error;
};

} // namespace

TEST_F(RecordingTest, TheHeadIsReadAsItWasWritten)
{
    ASSERT_TRUE(reader.open(write(recordingLine(head())), error)) << qPrintable(error);
    EXPECT_EQ(head().simulator, reader.head().simulator);
    EXPECT_EQ(head().scenario, reader.head().scenario);
    EXPECT_EQ(head().seed, reader.head().seed);
    EXPECT_EQ(head().speed, reader.head().speed);
    EXPECT_EQ(head().login, reader.head().login);
    EXPECT_EQ(head().settings, reader.head().settings);
    EXPECT_EQ(head().faults, reader.head().faults);
    EXPECT_FALSE(reader.next(error));
    EXPECT_EQ(QString(), error);
}

TEST_F(RecordingTest, ACallIsReadAsItWasWritten)
{
    ASSERT_TRUE(reader.open(write(recordingLine(head()) + recordingLine(call())), error));
    const std::optional<RecordedEntry> entry = reader.next(error);
    ASSERT_TRUE(entry) << qPrintable(error);
    EXPECT_EQ(2, reader.line());
    EXPECT_EQ(RecordedEntry::Call, entry->kind);
    EXPECT_EQ(3, entry->page);
    EXPECT_EQ(call().name, entry->name);
    EXPECT_EQ(call().uuid, entry->uuid);
    EXPECT_EQ(call().args, entry->args);
    EXPECT_EQ(call().exchangeTime, entry->time.toMSecsSinceEpoch());
}

TEST_F(RecordingTest, ACommandSaysWhetherItActedInACall)
{
    Entry command = ofKind(Entry::Command);
    command.name = QStringLiteral("halt 609801.SH");
    Entry inCall = command;
    inCall.call = 7;
    ASSERT_TRUE(reader.open(write(recordingLine(head()) + recordingLine(command) + recordingLine(inCall)), error));
    for (const bool isInCall : {false, true}) {
        const std::optional<RecordedEntry> entry = reader.next(error);
        ASSERT_TRUE(entry) << qPrintable(error);
        EXPECT_EQ(RecordedEntry::Command, entry->kind);
        EXPECT_EQ(command.name, entry->name);
        EXPECT_EQ(isInCall, entry->isInCall);
        EXPECT_EQ(reader.line(), entry->line);
    }
}

TEST_F(RecordingTest, ARecordingOfTheFirstVersionIsRead)
{
    RecordingHead old = head();
    old.faults.clear();
    const QByteArray line = recordingLine(old).replace("\"version\":2", "\"version\":1");
    EXPECT_FALSE(line.contains("faults"));
    EXPECT_EQ(QString(), problemOf(line));
}

TEST_F(RecordingTest, WhatPassesIsRecordedAndHowLongItTookIsNot)
{
    QByteArray lines = recordingLine(head());
    const std::pair<Entry, RecordedEntry::Kind> table[] = {
        {ofKind(Entry::PageOpened), RecordedEntry::PageOpened},
        {ofKind(Entry::PageClosed), RecordedEntry::PageClosed},
        {ofKind(Entry::Event, true), RecordedEntry::Reply},
        {ofKind(Entry::Event), RecordedEntry::Push},
        {ofKind(Entry::HostRequest), RecordedEntry::HostRequest},
        {ofKind(Entry::HostAnswer), RecordedEntry::HostAnswer},
        {ofKind(Entry::HostEvent), RecordedEntry::HostEvent},
        {ofKind(Entry::Quote), RecordedEntry::Quote},
        {ofKind(Entry::Command), RecordedEntry::Command},
    };
    for (const auto &row : table)
        lines += recordingLine(row.first);
    for (const Entry::Kind kind : {Entry::CallDone, Entry::EventDelivered, Entry::HostCall})
        EXPECT_EQ(QByteArray(), recordingLine(ofKind(kind)));
    ASSERT_TRUE(reader.open(write(lines), error));
    for (const auto &row : table) {
        const std::optional<RecordedEntry> entry = reader.next(error);
        ASSERT_TRUE(entry) << qPrintable(error);
        EXPECT_EQ(row.second, entry->kind);
    }
}

TEST_F(RecordingTest, ALastLineThatIsNotWholeIsTheEnd)
{
    const QByteArray good = recordingLine(head()) + recordingLine(call());
    EXPECT_EQ(QString(), problemOf(good + recordingLine(call()).chopped(10)));
    EXPECT_EQ(QString(), problemOf(good.chopped(1)));
}

TEST_F(RecordingTest, ABrokenFileIsToldWithItsLine)
{
    const QByteArray good = recordingLine(head());
    EXPECT_EQ(QStringLiteral("line 1: not the head of a recording"), problemOf({}));
    EXPECT_EQ(QStringLiteral("line 1: not the head of a recording"), problemOf("{}\n"));
    EXPECT_EQ(QStringLiteral("line 1: not a JSON object"), problemOf("hello\n"));
    EXPECT_EQ(QStringLiteral("line 1: version 3 of the format is not known"),
              problemOf(QByteArray(good).replace("\"version\":2", "\"version\":3")));
    EXPECT_EQ(QStringLiteral("line 1: version 0 of the format is not known"), // not the text itself: it has two lines
              problemOf(QByteArray(good).replace("\"version\":2", "\"version\":\"2\\n\"")));
    EXPECT_EQ(QStringLiteral("line 2: not a JSON object"), problemOf(good + "{broken\n" + recordingLine(call())));
    EXPECT_EQ(QStringLiteral("line 2: no known kind of entry"), problemOf(good + "{\"kind\":\"song\"}\n"));
    EXPECT_EQ(QStringLiteral("line 2: no time"), problemOf(good + "{\"kind\":\"call\",\"time\":\"noon\"}\n"));
    RecordingReader missing;
    EXPECT_FALSE(missing.open(QStringLiteral("/no/such/file"), error));
    EXPECT_TRUE(error.startsWith(QStringLiteral("/no/such/file: "))) << qPrintable(error); // the rest is the system's
    EXPECT_LT(QStringLiteral("/no/such/file: ").size(), error.size());
}

TEST_F(RecordingTest, TheRecorderWritesEverythingInOrder)
{
    constexpr int kEntries = 20000;
    const QString name = folder.filePath(QStringLiteral("r.jsonl"));
    Recorder recorder(name, head(), [](const QString &problem) { FAIL() << qPrintable(problem); });
    ASSERT_TRUE(recorder.isOpen());
    for (int i = 0; i < kEntries; ++i) {
        Entry entry = call();
        entry.args = {i};
        traffic::log().add(entry);
    }
    EXPECT_TRUE(recorder.finish());
    traffic::log().add(call()); // too late
    ASSERT_TRUE(reader.open(name, error));
    for (int i = 0; i < kEntries; ++i) {
        const std::optional<RecordedEntry> entry = reader.next(error);
        ASSERT_TRUE(entry);
        ASSERT_EQ(QVariantList{i}, entry->args);
    }
    EXPECT_FALSE(reader.next(error));
}

#ifdef Q_OS_LINUX
TEST_F(RecordingTest, AFullDiskEndsTheRecordingAndIsTold)
{
    QStringList problems;
    Recorder recorder(QStringLiteral("/dev/full"), head(), [&](const QString &problem) { problems.append(problem); });
    ASSERT_TRUE(recorder.isOpen());
    traffic::log().add(call());
    EXPECT_FALSE(recorder.finish());
    EXPECT_EQ(QStringList(QStringLiteral("No space left on device")), problems);
}
#endif
