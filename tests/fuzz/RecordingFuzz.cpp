#include "Require.h"
#include "VariantParts.h"

#include "recording/Recording.h"

#include <QTemporaryDir>

#include <cstdint>

using namespace sim;

namespace {

/// A file of the fuzzer's own, written anew for each input.
QString fileWith(const QByteArray &text)
{
    static const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("recording")));
    require(file.open(QIODevice::WriteOnly) && file.write(text) == text.size(), "the file was not written");
    return file.fileName();
}

/// Any bytes are a recording up to some line, and then a mistake of one line, or none.
void readAnything(const QByteArray &text)
{
    RecordingReader reader;
    QString error;
    const bool isOpen = reader.open(fileWith(text), error);
    require(isOpen == error.isEmpty(), "a recording was refused without a reason");
    int entries = 0;
    while (isOpen && reader.next(error)) {
        ++entries;
        require(reader.line() == entries + 1, "an entry is not one line");
    }
    require(!error.contains(QLatin1Char('\n')), "a mistake has two lines: " + error.toUtf8());
    require(!isOpen || error.isEmpty() || error.contains(QStringLiteral(": line %1: ").arg(reader.line())),
            "a mistake has no place: " + error.toUtf8());
    require(reader.lastPage() >= 0, "there is no such page");
}

/// A text that a scenario or a settings file can be: both are read as UTF-8, where Qt drops a mark at the beginning and
/// ends at a NUL, and a file with a NUL is neither.
QByteArray anyFile(Decisions &decisions)
{
    return anyText(decisions).remove(QChar(0xfeff)).remove(QChar(0)).toUtf8();
}

/// What was written is read as it was. Arguments are those that JSON can hold, as calls and events have them.
void writeAndRead(Decisions &decisions)
{
    RecordingHead head;
    head.simulator = anyText(decisions);
    head.scenario = anyFile(decisions);
    head.seed = decisions.bits<quint64>();
    head.login = anyText(decisions);
    head.settings = anyFile(decisions);
    for (int count = decisions.below(3); count > 0; --count)
        head.faults.append(anyText(decisions));
    traffic::Entry entry;
    const bool isCommand = decisions.below(4) == 0;
    entry.kind = isCommand ? traffic::Entry::Command : traffic::Entry::Call;
    entry.call = quint64(decisions.below(2));
    entry.page = decisions.bits<quint16>();
    entry.name = anyText(decisions);
    entry.uuid = anyText(decisions);
    for (int count = decisions.below(4); count > 0; --count)
        entry.args.append(anyText(decisions));
    entry.exchangeTime = decisions.bits<quint32>();

    RecordingReader reader;
    QString error;
    require(reader.open(fileWith(recordingLine(head) + recordingLine(entry)), error), "the head is not read");
    require(reader.head().simulator == head.simulator && reader.head().scenario == head.scenario &&
                reader.head().seed == head.seed && reader.head().login == head.login &&
                reader.head().settings == head.settings && reader.head().faults == head.faults,
            "the head changes when it is written and read");
    const std::optional<RecordedEntry> read = reader.next(error);
    require(read && error.isEmpty(), "the entry is not read: " + error.toUtf8());
    require(read->kind == (isCommand ? RecordedEntry::Command : RecordedEntry::Call) &&
                read->isInCall == (isCommand && entry.call != 0) && read->page == entry.page &&
                read->name == entry.name && read->uuid == entry.uuid && read->args == entry.args &&
                read->time.toMSecsSinceEpoch() == entry.exchangeTime,
            "an entry changes when it is written and read");
    require(!reader.next(error) && error.isEmpty(), "there is more than was written");
}

} // namespace

/// A file that somebody gives to the simulator to play, or one that it writes. The first byte says which.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    if (size == 0)
        return 0;
    Decisions decisions(bytes + 1, size - 1);
    if (bytes[0] % 4 == 0)
        writeAndRead(decisions);
    else
        readAnything(QByteArray(reinterpret_cast<const char *>(bytes) + 1, int(size) - 1));
    return 0;
}
