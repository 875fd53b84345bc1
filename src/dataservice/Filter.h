#pragma once

#include "common/Reply.h"

#include <QJsonDocument>

/// The reply to a list call whose filter is a JSON text: writeAnswer writes the result for the parsed filter, and a
/// text that is not JSON is refused. Meant: a map or list in place of the text is refused too.
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
