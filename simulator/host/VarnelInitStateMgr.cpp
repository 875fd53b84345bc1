#include "VarnelInitStateMgr.h"

#include "traffic/Log.h"

#include <QHash>

#include <mutex>

namespace {

enum class Load { Running, Done };

std::mutex s_mutex;

/// The loads by key, guarded by s_mutex. A load that was not started, or that failed, has no entry.
QHash<QString, Load> &loads()
{
    static auto *const loads =
        new QHash<QString, Load>; // never destroyed, so that it can be used until the process ends
    return *loads;
}

} // namespace

VarnelInitStateMgr *VarnelInitStateMgr::instance()
{
    static VarnelInitStateMgr instance; // has no members, so that it can be used after its destruction
    return &instance;
}

bool VarnelInitStateMgr::StartInit(const QString &key)
{
    sim::traffic::log().hostCall("VarnelInitStateMgr::StartInit");
    const std::lock_guard lock(s_mutex);
    if (loads().contains(key))
        return false;
    loads().insert(key, Load::Running);
    return true;
}

bool VarnelInitStateMgr::FinishInit(const QString &key, bool succeeded, bool)
{
    sim::traffic::log().hostCall("VarnelInitStateMgr::FinishInit");
    const std::lock_guard lock(s_mutex);
    const auto load = loads().find(key);
    if (load == loads().end() || *load != Load::Running)
        return false; // it was not started
    if (succeeded)
        *load = Load::Done;
    else
        loads().erase(load);
    return true;
}

bool VarnelInitStateMgr::IsInited(const QString &key)
{
    sim::traffic::log().hostCall("VarnelInitStateMgr::IsInited");
    const std::lock_guard lock(s_mutex);
    const auto load = loads().constFind(key);
    return load != loads().constEnd() && *load == Load::Done;
}
