#include "common/Reply.h"

#include "VarnelCefView.h"

using namespace WebConstants;

namespace {

/// The keys in the order in which JSON objects list them.
template <typename WriteResultMember>
QString envelope(const QString &uuid, const QString &code, const QString &msg, WriteResultMember writeResultMember)
{
    JsonWriter json;
    json.punctuation('{');
    json.key(Key::code);
    json.string(code);
    json.punctuation(',');
    json.key(Key::msg);
    json.string(msg);
    json.punctuation(',');
    writeResultMember(json);
    json.key(Key::uuid);
    json.string(uuid);
    json.punctuation('}');
    return json.take();
}

template <typename WriteResult>
QString envelopeWithResult(const QString &uuid, const QString &code, const QString &msg, WriteResult writeResult)
{
    return envelope(uuid, code, msg, [&writeResult](JsonWriter &json) {
        json.key(Key::resultData);
        writeResult(json);
        json.punctuation(',');
    });
}

} // namespace

QString Reply::toText(const QVariant &value, QtMsgType level, const Operation &operation)
{
    const QString text = compactJson(value);
    if (text.isEmpty())
        logLine(level, operation) << qUtf8Printable(Message::argumentConversionError) << value;
    return text;
}

QString Reply::text(const QString &uuid, const QVariant &resultData, const QString &code, const QString &msg)
{
    return envelopeWithResult(uuid, code, msg, [&resultData](JsonWriter &json) { json.value(resultData); });
}

QString Reply::text(const QString &uuid, const WriteResult &writeResult)
{
    return envelopeWithResult(uuid, Code::success, QString(), writeResult);
}

QString Reply::textWithoutResult(const QString &uuid, const QString &code, const QString &msg)
{
    return envelope(uuid, code, msg, [](JsonWriter &) {});
}

QVariantList Reply::toList(const QList<QVariantMap> &records)
{
    QVariantList list;
    list.reserve(records.size());
    for (const QVariantMap &record : records)
        list.append(record);
    return list;
}

QCefEvent Reply::event(const QString &name, std::initializer_list<QString> texts)
{
    QCefEvent event(name);
    for (const QString &text : texts)
        event.arguments().append(text);
    return event;
}

void Reply::send(VarnelCefView *view, const QString &event, const QString &text)
{
    view->broadcastEvent(Reply::event(event, {text}));
}
