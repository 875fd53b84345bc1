#pragma once

#include "HostApi.h"

#include <QString>

/// Remembers which of the terminal's start-up loads have been done. Safe to call from any thread; the
/// host owns the instance.
class VARNEL_HOST_API VarnelInitStateMgr {
public:
    /// Never null; valid until the process ends.
    static VarnelInitStateMgr *instance();

    /// True for exactly one caller until FinishInit: that caller does the load. False while a load is under way and
    /// after one that succeeded. The library has one key, "SnbBindInit", for its permissions.
    bool StartInit(const QString &key);

    /// Ends the load; one that did not succeed may be started again. The library passes true last and ignores the
    /// result.
    bool FinishInit(const QString &key, bool succeeded, bool flag);

    /// True after a load that succeeded, for the rest of the run.
    bool IsInited(const QString &key);
};
