#pragma once

#include "HostApi.h"

#include <QString>
#include <QVariantMap>

/// Emits a quote as the host's quote handler does, on the calling thread.
VARNEL_HOST_API void emitTick(const QString &symbol, const QVariantMap &data);

/// How many receivers are connected to the quotes.
VARNEL_HOST_API int tickReceivers();
