#pragma once

#include <QStringList>

class VarnelCefView;

namespace sim {

/// The symbols whose quotes the pages want. Ends the stream of a symbol when the last page that wanted it has
/// unsubscribed or is gone. The library tells a terminal only which quotes it wants, so that they would stream for
/// ever. User-interface thread only. Call it after the library has made the same change.
namespace WantedQuotes {

void add(const VarnelCefView *view, const QStringList &symbols);
void remove(const VarnelCefView *view, const QStringList &symbols);
void removeAll(const VarnelCefView *view);

} // namespace WantedQuotes
} // namespace sim
