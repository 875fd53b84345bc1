#include "common/Reply.h"

#include "VarnelCefView.h"

#include <QJsonDocument>

using namespace WebConstants;

QString Reply::toText(const QVariant &value, QtMsgType level, const Operation &operation)
{
    const QJsonDocument document = QJsonDocument::fromVariant(value);
    if (document.isNull()) {
        logLine(level, operation) << qUtf8Printable(Message::argumentConversionError) << value;
        return QString();
    }
    return QString::fromUtf8(document.toJson(QJsonDocument::Compact));
}

QString Reply::text(const QString &uuid, const QVariant &resultData, QtMsgType level, const Operation &operation,
                    const QString &code, const QString &msg)
{
    return toText(QVariantMap{{Key::uuid, uuid}, {Key::code, code}, {Key::msg, msg}, {Key::resultData, resultData}},
                  level, operation);
}

QString Reply::textWithoutResult(const QString &uuid, QtMsgType level, const Operation &operation, const QString &code,
                                 const QString &msg)
{
    return toText(QVariantMap{{Key::uuid, uuid}, {Key::code, code}, {Key::msg, msg}}, level, operation);
}

QVariantList Reply::toList(const QList<QVariantMap> &records)
{
    QVariantList list;
    list.reserve(records.size());
    for (const QVariantMap &record : records)
        list.append(record);
    return list;
}

QCefEvent Reply::event(const QString &name, const QStringList &texts)
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
