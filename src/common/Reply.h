#pragma once

#include "common/JsonWriter.h"
#include "common/Logging.h"
#include "common/WebConstants.h"

#include "QCefEvent.h"

#include <QVariantMap>

#include <functional>
#include <initializer_list>

class VarnelCefView;

/// The reply envelope, how it becomes text, and how a text reaches a page.
namespace Reply {

/// Compact JSON of a map or list. Any other value gives the empty text, and one log line of the given level that names
/// the operation and shows the value.
QString toText(const QVariant &value, QtMsgType level, const Operation &operation);

/// Writes the result of a reply: exactly one JSON value.
using WriteResult = std::function<void(JsonWriter &)>;

/// The text of a whole reply: an operation states its result, and code and message unless it succeeded.
/// The second form writes the result directly, without making a value of it first.
QString text(const QString &uuid, const QVariant &resultData, const QString &code = WebConstants::Code::success,
             const QString &msg = QString());
QString text(const QString &uuid, const WriteResult &writeResult);

/// The same without the key "resultData".
QString textWithoutResult(const QString &uuid, const QString &code = WebConstants::Code::success,
                          const QString &msg = QString());

/// Records in the form in which a reply or push can carry them.
QVariantList toList(const QList<QVariantMap> &records);

/// An event whose arguments are the texts.
QCefEvent event(const QString &name, std::initializer_list<QString> texts);

/// Broadcasts one event with one text argument on the view, which must not be null.
void send(VarnelCefView *view, const QString &event, const QString &text);

} // namespace Reply
