#pragma once

#include "HostApi.h"

#include <QString>

/// The host's user interface, as far as a page may steer it.
class VARNEL_HOST_API BaseBusinessDataInterface {
public:
    /// Opens the terminal's menu tab with that identifier. Called on the thread of a page call, which is
    /// the user-interface thread for a dispatcher that has its view as parent.
    static void OpenMenuTabByMenuID(const QString &menuId);
};
