#pragma once

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>

/// A QString, as Qt 6 spells it.
inline QString operator""_qs(const char16_t *text, std::size_t length)
{
    return QString(reinterpret_cast<const QChar *>(text), int(length));
}

/// The whole text of a reply that succeeded; resultData is JSON.
inline QString successReply(const QString &resultData, const QString &uuid = u"u1"_qs)
{
    return uR"({"code":"0","msg":"","resultData":%1,"uuid":"%2"})"_qs.arg(resultData, uuid);
}

/// The whole text of a reply that refuses the call and has no result.
inline QString refusal(const QString &msg, const QString &uuid = u"u1"_qs)
{
    return uR"({"code":"-1","msg":"%1","uuid":"%2"})"_qs.arg(msg, uuid);
}

inline QJsonValue resultOf(const QString &reply)
{
    return QJsonDocument::fromJson(reply.toUtf8()).object().value(u"resultData"_qs);
}
