#pragma once

#include <QMap>
#include <QVariantMap>

/// A host that costs next to nothing, so that what is measured is the library's share: it answers with values that were
/// made before, and its views drop what they get. Only what the benchmarks touch is replaced; the rest is the
/// simulator's.
namespace CheapHost {

/// A quote of 40 fields.
QVariantMap quote();

/// An order as the terminal's events bring it: its number makes its identifier.
QVariantMap order(int number);

/// A page's record of an order, as the library makes it.
QVariantMap orderRecord();
QVariantMap positionRecord();
QVariantMap securityRecord();

/// How many securities the terminal lists from now on.
void listSecurities(int count);

/// How many events its views have dropped.
qint64 droppedEvents();

} // namespace CheapHost
