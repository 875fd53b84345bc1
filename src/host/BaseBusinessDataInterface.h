#pragma once

#include "HostApi.h"

#include <QString>

/// The host's user interface, as far as a page may control it.
class VARNEL_HOST_API BaseBusinessDataInterface {
public:
    /// Opens the terminal's menu tab with that identifier; does nothing when there is none. The library passes "1210",
    /// the permissions. Called on the thread of a page call, which is the user-interface thread for a dispatcher that
    /// has its view as parent. May spin the event loop.
    static void OpenMenuTabByMenuID(const QString &menuId);
};
