#pragma once

#include "common/Reply.h"

#include <QJsonDocument>

/// The reply to a list call whose filter is a JSON text: what writeAnswer writes for the parsed filter, or the refusal
/// when it is none. Meant: a map or list given as the filter itself has no bytes and is refused too.
template <typename WriteAnswer>
QString filteredReply(const QString &uuid, const QVariant &filter, const Operation &operation, WriteAnswer writeAnswer)
{
    using namespace WebConstants;
    const QJsonDocument document = QJsonDocument::fromJson(filter.toByteArray());
    if (document.isNull()) {
        logLine(QtWarningMsg, operation) << qUtf8Printable(Message::filterConversionError) << filter;
        return Reply::textWithoutResult(uuid, Code::failure, Message::filterConversionError);
    }
    return Reply::text(uuid, [&](JsonWriter &json) { writeAnswer(document, json); });
}
