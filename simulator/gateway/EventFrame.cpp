#include "gateway/EventFrame.h"

#include "common/JsonWriter.h"

QString sim::eventFrame(const QCefEvent &event)
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
