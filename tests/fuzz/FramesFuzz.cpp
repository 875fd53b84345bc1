#include "Require.h"
#include "VariantParts.h"

#include "common/JsonWriter.h"
#include "common/WebConstants.h"
#include "gateway/CallFrame.h"
#include "gateway/EventFrame.h"
#include "gateway/TrafficFrame.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdint>

using namespace sim;

namespace {

QByteArray frameOf(const CallFrame &call)
{
    JsonWriter json;
    json.punctuation('{');
    json.key(QStringLiteral("invoke"));
    json.string(call.method);
    json.punctuation(',');
    json.key(QStringLiteral("args"));
    json.array(call.args, [&json](const QVariant &argument) { json.value(argument); });
    json.punctuation('}');
    return json.take().toUtf8();
}

/// Any bytes are a call, or end the connection. A call that is written and read again is the same.
void readCall(const QByteArray &bytes)
{
    constexpr int kWrongData = 1007;
    const CallFrame call = CallFrame::read(bytes);
    if (call.closeCode != 0) {
        require(call.closeCode == kWrongData && call.closeReason.startsWith(QLatin1String("bad frame: ")),
                "ended in another way: " + call.closeReason.toUtf8());
        require(call.method.isEmpty() && call.args.isEmpty(), "a frame that is no call has a method or arguments");
        return;
    }
    require(call.size == bytes.size(), "the size is not that of the frame");
    const CallFrame again = CallFrame::read(frameOf(call));
    require(again.closeCode == 0, "a call that was written again is none: " + again.closeReason.toUtf8());
    require(again.method == call.method && again.args == call.args, "a call changes when it is written and read");
}

QJsonObject objectIn(const QByteArray &frame)
{
    const QJsonDocument document = QJsonDocument::fromJson(frame);
    require(document.isObject(), "an event is no JSON object: " + frame);
    return document.object();
}

/// An event with any texts becomes a JSON object with its name and its arguments, in which Qt's reader drops some
/// marks.
void writeEvent(Decisions &decisions)
{
    const QChar mark(0xfeff);
    QCefEvent event(anyText(decisions).remove(mark));
    for (int count = decisions.below(4); count > 0; --count)
        event.arguments().append(anyText(decisions).remove(mark));
    const QJsonObject object = objectIn(eventFrame(event).toUtf8());
    require(object.size() == 2 && object.value(QLatin1String("event")).toString() == event.eventName() &&
                object.value(QLatin1String("args")).toArray().toVariantList() == event.arguments(),
            "an event changes when it is written and read");
}

/// The uuid of a reply is found whatever is in it, or not at all when it is long.
void findUuid(Decisions &decisions)
{
    constexpr int kShort = 90; // characters that can each become an escape of six
    const QString uuid = anyText(decisions).left(kShort);
    QCefEvent reply(WebConstants::ReplyEvent::Data_getToken);
    reply.arguments().append(compactJson(QVariantMap{{QStringLiteral("code"), QStringLiteral("0")},
                                                     {QStringLiteral("resultData"), anyValue(decisions)},
                                                     {QStringLiteral("uuid"), uuid}}));
    require(uuidOf(reply) == uuid, "found another uuid: " + uuidOf(reply).toUtf8() + " for " + uuid.toUtf8());
}

QCefEvent tickOf(const QString &symbol)
{
    QCefEvent tick(WebConstants::Push::tickUpdate);
    tick.arguments().append(compactJson(QVariantMap{{QStringLiteral("symbol"), symbol}}));
    return tick;
}

/// Ticks of two symbols are never taken for ticks of one: the later would take the place of the other.
void tellTicksApart(Decisions &decisions)
{
    const QString one = anyKey(decisions);
    const QString other = anyKey(decisions);
    EventFrames frames;
    const QString first = frames.of(tickOf(one)).tickOf;
    const QString second = frames.of(tickOf(other)).tickOf;
    require((first == second) == (one == other), "mixed up: " + one.toUtf8() + " and " + other.toUtf8());
}

traffic::Entry anyEntry(Decisions &decisions)
{
    traffic::Entry entry;
    entry.kind = traffic::Entry::Kind(decisions.below(traffic::Entry::Command + 1));
    entry.page = decisions.bits<int>();
    entry.name = anyText(decisions);
    entry.uuid = anyText(decisions);
    entry.args = anyList(decisions);
    entry.messageId = anyText(decisions);
    entry.isReply = decisions.oneIn(2);
    entry.size = decisions.bits<qint64>();
    entry.count = decisions.bits<int>();
    entry.of = decisions.bits<quint64>();
    entry.number = decisions.bits<quint64>();
    entry.time = decisions.bits<qint64>();
    return entry;
}

constexpr int kLevelsOfQt = 1024;

/// How deep the lists and objects of a JSON text lie in each other.
int levelsOf(const QByteArray &json)
{
    int level = 0;
    int most = 0;
    bool isInText = false;
    for (int at = 0; at < json.size(); ++at) {
        const char character = json[at];
        if (isInText && character == '\\')
            ++at;
        else if (character == '"')
            isInText = !isInText;
        else if (!isInText && (character == '[' || character == '{'))
            most = qMax(most, ++level);
        else if (!isInText && (character == ']' || character == '}'))
            --level;
    }
    return most;
}

/// Entries of the log become one JSON array, whatever has passed. Qt's reader, with which this looks, takes no deeper
/// ones; the browsers for which they are do.
void writeTraffic(Decisions &decisions)
{
    const quint64 lost = decisions.oneIn(2) ? decisions.bits<quint64>() : 0;
    std::vector<traffic::Entry> entries;
    for (int count = decisions.below(4); count > 0; --count)
        entries.push_back(anyEntry(decisions));
    const QByteArray text = trafficFrame(lost, entries);
    if (levelsOf(text) > kLevelsOfQt)
        return;
    const QJsonDocument frame = QJsonDocument::fromJson(text);
    const int expected = int(entries.size()) + (lost > 0 ? 1 : 0);
    require(frame.isArray() && frame.array().size() == expected, "not an array of all entries");
    for (const QJsonValue entry : frame.array())
        require(!entry[QLatin1String("kind")].toString().isEmpty(), "an entry has no kind");
}

} // namespace

/// What passes between pages and gateway, in both directions. The first byte says which.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    if (size == 0)
        return 0;
    Decisions decisions(bytes + 1, size - 1);
    switch (bytes[0] % 8) {
    case 0:
        writeEvent(decisions);
        break;
    case 1:
        findUuid(decisions);
        break;
    case 2:
        tellTicksApart(decisions);
        break;
    case 3:
        writeTraffic(decisions);
        break;
    default: // a letter or a brace, as files that people write begin
        readCall(QByteArray(reinterpret_cast<const char *>(bytes) + 1, int(size) - 1));
    }
    return 0;
}
