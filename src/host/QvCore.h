#pragma once

#include "HostApi.h"

#include <QString>

/// The terminal's core. Safe to call from any thread; the host owns the instance.
class VARNEL_HOST_API QvCore {
public:
    /// Never null; valid until the process ends.
    static QvCore *instance();

    /// The token of the current login; empty when there is none. Asked for anew by every page call.
    QString getCurrentToken();
};
