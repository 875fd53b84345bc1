// The terminal must put here: its own record of start-up loads, or nothing, if this one is enough.
#include "VarnelInitStateMgr.h"

#include <QSet>

#include <mutex>

namespace {

struct Loads {
    std::mutex mutex; ///< guards the others
    QSet<QString> running;
    QSet<QString> done;
};

Loads &loads()
{
    static auto *const loads = new Loads; // never deleted: it must be valid until the process ends
    return *loads;
}

} // namespace

VarnelInitStateMgr *VarnelInitStateMgr::instance()
{
    static VarnelInitStateMgr instance;
    return &instance;
}

bool VarnelInitStateMgr::StartInit(const QString &key)
{
    const std::lock_guard<std::mutex> lock(loads().mutex);
    if (loads().running.contains(key) || loads().done.contains(key))
        return false;
    loads().running.insert(key);
    return true;
}

bool VarnelInitStateMgr::FinishInit(const QString &key, bool succeeded, bool)
{
    const std::lock_guard<std::mutex> lock(loads().mutex);
    if (!loads().running.remove(key))
        return false; // it was not started
    if (succeeded)
        loads().done.insert(key);
    return true;
}

bool VarnelInitStateMgr::IsInited(const QString &key)
{
    const std::lock_guard<std::mutex> lock(loads().mutex);
    return loads().done.contains(key);
}
