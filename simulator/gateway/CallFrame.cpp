#include "gateway/CallFrame.h"

#include "gateway/ByteOrderMarks.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace sim {

namespace {

constexpr int kWrongData = 1007;
constexpr int kTooLong = 1009;

CallFrame bad(const char *reason)
{
    CallFrame frame;
    frame.closeCode = kWrongData;
    frame.closeReason = QStringLiteral("bad frame: ") + QLatin1String(reason);
    return frame;
}

} // namespace

CallFrame CallFrame::read(const QByteArray &text)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(withEscapedMarks(text), &error);
    if (error.error != QJsonParseError::NoError)
        return bad("not JSON");
    if (!document.isObject())
        return bad("not a JSON object");
    const QJsonObject object = document.object();
    const QJsonValue method = object.value(QLatin1String("invoke"));
    const QJsonValue args = object.value(QLatin1String("args"));
    if (!method.isString())
        return bad("\"invoke\" is not a text");
    if (!args.isArray())
        return bad("\"args\" is not an array");
    CallFrame frame;
    frame.method = method.toString();
    frame.args = args.toArray().toVariantList();
    frame.size = text.size();
    return frame;
}

CallFrame CallFrame::binary()
{
    return bad("a binary frame");
}

CallFrame CallFrame::tooLong()
{
    CallFrame frame;
    frame.closeCode = kTooLong;
    frame.closeReason = QStringLiteral("Maximum framesize exceeded.");
    return frame;
}

} // namespace sim
