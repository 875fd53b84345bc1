#pragma once

#include "exchange/Quote.h"

#include <QVariantMap>

/// Brings the exchange's quotes to the listeners of CommonQuotaHandler.
namespace sim::QuoteTicks {

/// The snapshot of the quote, as pages receive it.
QVariantMap fieldsOf(const Quote &quote);

/// Emits the handler's tick signal on the calling thread. The map is made for this call, so that the listeners' threads
/// share it with nobody.
void emitTick(const Quote &quote);

} // namespace sim::QuoteTicks
