#include "recording/Recording.h"

#include "gateway/ByteOrderMarks.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace sim {

namespace {

using traffic::Entry;

const QString kFormat = QStringLiteral("varnel recording");
const QString kTimeFormat = QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz");

namespace Key {
const QString format = QStringLiteral("format");
const QString version = QStringLiteral("version");
const QString simulator = QStringLiteral("simulator");
const QString scenario = QStringLiteral("scenario");
const QString seed = QStringLiteral("seed");
const QString speed = QStringLiteral("speed");
const QString login = QStringLiteral("login");
const QString settings = QStringLiteral("settings");
const QString faults = QStringLiteral("faults");
const QString kind = QStringLiteral("kind");
const QString time = QStringLiteral("time");
const QString page = QStringLiteral("page");
const QString name = QStringLiteral("name");
const QString uuid = QStringLiteral("uuid");
const QString args = QStringLiteral("args");
const QString isInCall = QStringLiteral("isInCall");
} // namespace Key

/// By RecordedEntry::Kind.
const QString kKinds[] = {
    QStringLiteral("opened"), QStringLiteral("closed"),  QStringLiteral("call"),   QStringLiteral("reply"),
    QStringLiteral("push"),   QStringLiteral("request"), QStringLiteral("answer"), QStringLiteral("event"),
    QStringLiteral("quote"),  QStringLiteral("command"),
};

std::optional<RecordedEntry::Kind> kindOf(const Entry &entry)
{
    switch (entry.kind) {
    case Entry::PageOpened:
        return RecordedEntry::PageOpened;
    case Entry::PageClosed:
        return RecordedEntry::PageClosed;
    case Entry::Call:
        return RecordedEntry::Call;
    case Entry::Event:
        return entry.isReply ? RecordedEntry::Reply : RecordedEntry::Push;
    case Entry::HostRequest:
        return RecordedEntry::HostRequest;
    case Entry::HostAnswer:
        return RecordedEntry::HostAnswer;
    case Entry::HostEvent:
        return RecordedEntry::HostEvent;
    case Entry::Quote:
        return RecordedEntry::Quote;
    case Entry::Command:
        return RecordedEntry::Command;
    default: // they tell how long something took
        return std::nullopt;
    }
}

QByteArray lineOf(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

} // namespace

QByteArray recordingLine(const RecordingHead &head)
{
    QJsonObject object{
        {Key::format, kFormat},
        {Key::version, RecordingHead::kVersion},
        {Key::simulator, head.simulator},
        {Key::scenario, QString::fromUtf8(head.scenario)},
        {Key::seed, QString::number(head.seed)}, // a text, because JSON's numbers are not exact from 2^53 on
        {Key::speed, head.speed},
        {Key::login, head.login},
        {Key::settings, QString::fromUtf8(head.settings)},
    };
    if (!head.faults.isEmpty())
        object.insert(Key::faults, QJsonArray::fromStringList(head.faults));
    return lineOf(object);
}

QByteArray recordingLine(const Entry &entry)
{
    const std::optional<RecordedEntry::Kind> kind = kindOf(entry);
    if (!kind)
        return {};
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(entry.exchangeTime, Qt::UTC);
    QJsonObject object{{Key::kind, kKinds[*kind]}, {Key::time, time.toString(kTimeFormat)}};
    if (entry.page != 0)
        object.insert(Key::page, entry.page);
    if (!entry.name.isEmpty())
        object.insert(Key::name, entry.name);
    if (!entry.uuid.isEmpty())
        object.insert(Key::uuid, entry.uuid);
    if (!entry.args.isEmpty())
        object.insert(Key::args, QJsonArray::fromVariantList(entry.args));
    if (kind == RecordedEntry::Command && entry.call != 0)
        object.insert(Key::isInCall, true);
    return lineOf(object);
}

bool RecordingReader::open(const QString &fileName, QString &error)
{
    m_file.setFileName(fileName);
    if (!m_file.open(QIODevice::ReadOnly)) {
        error = QStringLiteral("%1: %2").arg(fileName, m_file.errorString());
        return false;
    }
    const std::optional<QJsonObject> head = readLine(error);
    if (!error.isEmpty())
        return false;
    if (!head || head->value(Key::format) != kFormat) {
        error = placeOfHead() + QStringLiteral("not the head of a recording");
        return false;
    }
    const QJsonValue version = head->value(Key::version);
    if (version != 1 && version != RecordingHead::kVersion) {
        error = placeOfHead() + QStringLiteral("version %1 of the format is not known").arg(version.toInt());
        return false;
    }
    m_head.simulator = head->value(Key::simulator).toString();
    m_head.scenario = head->value(Key::scenario).toString().toUtf8();
    m_head.seed = head->value(Key::seed).toString().toULongLong();
    m_head.speed = head->value(Key::speed).toDouble();
    m_head.login = head->value(Key::login).toString();
    m_head.settings = head->value(Key::settings).toString().toUtf8();
    m_head.faults = head->value(Key::faults).toVariant().toStringList();
    return true;
}

std::optional<RecordedEntry> RecordingReader::next(QString &error)
{
    const std::optional<QJsonObject> object = readLine(error);
    if (!object)
        return std::nullopt;
    const auto fail = [&](const QString &problem) {
        error = QStringLiteral("%1: line %2: %3").arg(fileName()).arg(m_line).arg(problem);
        return std::nullopt;
    };
    const auto kind = std::find(std::begin(kKinds), std::end(kKinds), object->value(Key::kind).toString());
    if (kind == std::end(kKinds))
        return fail(QStringLiteral("no known kind of entry"));
    RecordedEntry entry;
    entry.kind = RecordedEntry::Kind(kind - std::begin(kKinds));
    entry.time = QDateTime::fromString(object->value(Key::time).toString(), kTimeFormat);
    if (!entry.time.isValid())
        return fail(QStringLiteral("no time"));
    entry.time.setTimeSpec(Qt::UTC);
    entry.page = object->value(Key::page).toInt();
    entry.name = object->value(Key::name).toString();
    entry.uuid = object->value(Key::uuid).toString();
    entry.args = object->value(Key::args).toArray().toVariantList();
    entry.isInCall = object->value(Key::isInCall).toBool();
    entry.line = m_line;
    return entry;
}

int RecordingReader::lastPage() const
{
    int last = 0;
    QString error;
    RecordingReader reader;
    reader.open(fileName(), error);
    while (const std::optional<RecordedEntry> entry = reader.next(error))
        last = std::max(last, entry->page);
    return last;
}

std::optional<QJsonObject> RecordingReader::readLine(QString &error)
{
    const QByteArray text = m_file.readLine();
    if (text.isEmpty())
        return std::nullopt;
    ++m_line;
    const QJsonDocument document = QJsonDocument::fromJson(withEscapedMarks(text));
    if (document.isObject())
        return document.object();
    if (text.endsWith('\n'))
        error = QStringLiteral("%1: line %2: not a JSON object").arg(fileName()).arg(m_line);
    return std::nullopt; // without its end it is the last line of a simulator that was killed
}

} // namespace sim
