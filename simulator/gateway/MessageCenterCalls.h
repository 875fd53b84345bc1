#pragma once

#include <QStringList>
#include <QVariantList>

class VarnelCefView;

namespace sim {

/// The page calls that go to the message center: quote subscriptions and strategies.
/// User-interface thread only. Stateless, apart from WantedQuotes.
namespace MessageCenterCalls {

/// Makes the call. Returns false without effect for an unknown name and for a subscription without a uuid.
bool call(VarnelCefView *view, const QString &method, const QVariantList &args);

/// The symbols in the argument of a page: an array, a text that contains a JSON array, or a text with commas between
/// the symbols. Empty symbols are left out.
QStringList symbolsIn(const QVariant &argument);

} // namespace MessageCenterCalls
} // namespace sim
