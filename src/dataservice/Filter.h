#pragma once

#include "common/Reply.h"

#include <QJsonDocument>

/// The reply to a list call whose filter is a JSON text: what answer gives for the parsed filter, or the refusal
/// when it is none. Meant: a map or list given as the filter itself has no bytes and is refused too.
template <typename Answer>
QString filteredReply(const QString &uuid, const QVariant &filter, const Operation &operation, Answer answer)
{
    using namespace WebConstants;
    const QJsonDocument document = QJsonDocument::fromJson(filter.toByteArray());
    if (document.isNull()) {
        logLine(QtWarningMsg, operation) << qUtf8Printable(Message::filterConversionError) << filter;
        return Reply::textWithoutResult(uuid, QtWarningMsg, operation, Code::failure, Message::filterConversionError);
    }
    return Reply::text(uuid, answer(document), QtWarningMsg, operation);
}
