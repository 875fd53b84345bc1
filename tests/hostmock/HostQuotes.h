#pragma once

#include "HostApi.h"

#include <QString>
#include <QVariantMap>

/// Emits a tick from the host's quote handler, on the calling thread.
VARNEL_HOST_API void emitTick(const QString &symbol, const QVariantMap &data);

/// How many receivers are connected to the ticks.
VARNEL_HOST_API int tickReceivers();
