#include "VarnelInitStateMgr.h"

#include <QHash>

#include <mutex>

namespace {

enum class Load { UnderWay, Done };

std::mutex s_mutex;

/// By key, guarded by s_mutex; what is not there has not been started or has failed.
QHash<QString, Load> &loads()
{
    static auto *const loads = new QHash<QString, Load>; // never destroyed: valid until the process ends
    return *loads;
}

} // namespace

VarnelInitStateMgr *VarnelInitStateMgr::instance()
{
    static VarnelInitStateMgr instance; // holds nothing, so that its end does not matter
    return &instance;
}

bool VarnelInitStateMgr::StartInit(const QString &key)
{
    const std::lock_guard lock(s_mutex);
    if (loads().contains(key))
        return false;
    loads().insert(key, Load::UnderWay);
    return true;
}

bool VarnelInitStateMgr::FinishInit(const QString &key, bool succeeded, bool)
{
    const std::lock_guard lock(s_mutex);
    const auto load = loads().find(key);
    if (load == loads().end() || *load != Load::UnderWay)
        return false; // nobody has started it
    if (succeeded)
        *load = Load::Done;
    else
        loads().erase(load);
    return true;
}

bool VarnelInitStateMgr::IsInited(const QString &key)
{
    const std::lock_guard lock(s_mutex);
    const auto load = loads().constFind(key);
    return load != loads().constEnd() && *load == Load::Done;
}
