#include "gateway/EventFrame.h"

#include "common/JsonWriter.h"
#include "common/WebConstants.h"

#include <QJsonDocument>
#include <QJsonObject>

using namespace WebConstants;

namespace sim {

namespace {

/// The symbol in the text of a tick, as JSON writes it. Quotes in a text are escaped, so that this can only be the
/// member of that name.
QString symbolIn(const QString &tick)
{
    const QString member = QStringLiteral("\"symbol\":\"");
    const int before = tick.indexOf(member);
    if (before < 0)
        return QString();
    const int begin = before + member.size();
    int end = begin;
    while (end < tick.size() && tick[end] != QLatin1Char('"'))
        end += tick[end] == QLatin1Char('\\') ? 2 : 1; // what is escaped may be a quote
    return tick.mid(begin, end - begin);
}

/// Copies of one event share its arguments, until one of them changes: then it gets arguments of its own.
bool isCopy(const QCefEvent &event, const QCefEvent &other)
{
    return event.arguments().isSharedWith(other.arguments()) && event.eventName() == other.eventName();
}

} // namespace

QString eventFrame(const QCefEvent &event)
{
    JsonWriter json;
    json.punctuation('{');
    json.key(QStringLiteral("args"));
    json.array(event.arguments(), [&json](const QVariant &argument) { json.value(argument); });
    json.punctuation(',');
    json.key(QStringLiteral("event"));
    json.string(event.eventName());
    json.punctuation('}');
    return json.take();
}

bool isReply(const QCefEvent &event)
{
    return event.eventName().endsWith(QLatin1String("_RES"));
}

QString uuidOf(const QCefEvent &reply)
{
    // It is the last member of the envelope: searching from the end costs the same for every length of the result.
    constexpr int kEnd = 600;
    const QString member = QStringLiteral("\"uuid\":\"");
    const QString text = reply.arguments().value(0).toString();
    const QStringRef end = text.rightRef(kEnd);
    const int begin = end.lastIndexOf(member);
    if (begin < 0)
        return QString();
    const QStringRef uuid = end.mid(begin + member.size()).chopped(2); // "}
    if (!uuid.contains(QLatin1Char('\\')))
        return uuid.toString();
    const QByteArray object = '{' + end.mid(begin).toUtf8();
    return QJsonDocument::fromJson(object).object().value(Key::uuid).toString();
}

const EventFrame &EventFrames::of(const QCefEvent &event)
{
    if (m_event && isCopy(*m_event, event))
        return m_frame;
    const QString name = event.eventName();
    m_frame.text = eventFrame(event).toUtf8();
    m_frame.tickOf = name == Push::tickUpdate ? symbolIn(event.arguments().value(0).toString()) : QString();
    m_frame.holdsTicksBack = name == ReplyEvent::Sub_subscribe || name == ReplyEvent::UnSub_subscribe ||
                             name == ReplyEvent::UnSub_subscribeAll;
    m_event = event;
    return m_frame;
}

} // namespace sim
