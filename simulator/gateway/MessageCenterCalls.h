#pragma once

#include <QStringList>
#include <QVariantList>

class VarnelCefView;

namespace sim {

/// The page calls that go to the message center: quote subscriptions and strategies.
/// User-interface thread only. Each call is made once, and nothing is remembered of it.
namespace MessageCenterCalls {

/// Makes the call of that name. False, without any effect, when nobody handles it: an unknown name, or a subscription
/// that does not even say who asks.
bool call(VarnelCefView *view, const QString &method, const QVariantList &args);

/// The symbols that a page names: an array, a text that holds a JSON array, or a text with commas between them. Empty
/// ones are left out.
QStringList symbolsIn(const QVariant &argument);

} // namespace MessageCenterCalls
} // namespace sim
