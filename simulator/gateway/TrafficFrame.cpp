#include "gateway/TrafficFrame.h"

#include "common/JsonWriter.h"

namespace sim {

namespace {

using traffic::Entry;

constexpr int kLongestText = 16 * 1024;
constexpr int kLongestList = 100;

QString kindText(Entry::Kind kind)
{
    switch (kind) {
    case Entry::PageOpened:
        return QStringLiteral("pageOpened");
    case Entry::PageClosed:
        return QStringLiteral("pageClosed");
    case Entry::Call:
        return QStringLiteral("call");
    case Entry::CallDone:
        return QStringLiteral("callDone");
    case Entry::Event:
        return QStringLiteral("event");
    case Entry::EventDelivered:
        return QStringLiteral("eventDelivered");
    case Entry::HostCall:
        return QStringLiteral("hostCall");
    case Entry::HostRequest:
        return QStringLiteral("hostRequest");
    case Entry::HostAnswer:
        return QStringLiteral("hostAnswer");
    case Entry::HostEvent:
        return QStringLiteral("hostEvent");
    case Entry::Quote:
        return QStringLiteral("quote");
    case Entry::Command:
        return QStringLiteral("command");
    }
    return QString();
}

QVariant shortened(const QVariant &value, bool &isCut)
{
    if (value.userType() == QMetaType::QString) {
        const QString text = value.toString();
        if (text.size() <= kLongestText)
            return value;
        isCut = true;
        return text.left(kLongestText);
    }
    if (value.userType() == QMetaType::QVariantList) {
        const QVariantList list = value.toList();
        isCut = isCut || list.size() > kLongestList;
        QVariantList shorter;
        for (const QVariant &element : list.mid(0, kLongestList))
            shorter.append(shortened(element, isCut));
        return shorter;
    }
    if (value.userType() == QMetaType::QVariantMap) {
        QVariantMap map = value.toMap();
        for (QVariant &field : map)
            field = shortened(field, isCut);
        return map;
    }
    return value;
}

/// Leaves out what is empty, false or 0.
void member(JsonWriter &json, const QString &key, const QVariant &value)
{
    if (value.toString().isEmpty() || !value.toBool())
        return;
    json.punctuation(',');
    json.key(key);
    json.value(value);
}

void textMember(JsonWriter &json, const QString &key, const QString &text)
{
    if (text.isEmpty())
        return;
    json.punctuation(',');
    json.key(key);
    json.string(text);
}

} // namespace

QString trafficText(const Entry &entry)
{
    bool isCut = false;
    JsonWriter json;
    json.punctuation('{');
    json.key(QStringLiteral("kind"));
    json.string(kindText(entry.kind));
    member(json, QStringLiteral("number"), entry.number);
    member(json, QStringLiteral("time"), entry.time);
    member(json, QStringLiteral("exchangeTime"), entry.exchangeTime);
    member(json, QStringLiteral("call"), entry.call);
    member(json, QStringLiteral("of"), entry.of);
    member(json, QStringLiteral("page"), entry.page);
    textMember(json, QStringLiteral("name"), entry.name);
    textMember(json, QStringLiteral("uuid"), shortened(entry.uuid, isCut).toString());
    textMember(json, QStringLiteral("messageId"), entry.messageId);
    member(json, QStringLiteral("isReply"), entry.isReply);
    member(json, QStringLiteral("isHandled"), entry.isHandled);
    member(json, QStringLiteral("size"), entry.size);
    member(json, QStringLiteral("duration"), entry.duration);
    member(json, QStringLiteral("count"), entry.count);
    if (!entry.args.isEmpty()) {
        json.punctuation(',');
        json.key(QStringLiteral("args"));
        json.array(entry.args, [&](const QVariant &argument) { json.value(shortened(argument, isCut)); });
    }
    member(json, QStringLiteral("cut"), isCut);
    json.punctuation('}');
    return json.take();
}

QByteArray trafficFrame(quint64 lost, const std::vector<Entry> &entries)
{
    QByteArray text(1, '[');
    if (lost > 0)
        text += "{\"kind\":\"lost\",\"count\":" + QByteArray::number(lost) + '}';
    for (const Entry &entry : entries) {
        if (text.size() > 1)
            text += ',';
        text += trafficText(entry).toUtf8();
    }
    return text + ']';
}

} // namespace sim
