#include "Fault.h"
#include "VarnelInitStateMgr.h"

#include <QHash>

#include <atomic>
#include <mutex>

namespace {

struct Load {
    bool isDone = false;
    int starter = 0; ///< the number of a thread
};

std::mutex s_mutex;
QHash<QString, Load> s_loads; // guarded by s_mutex; one that was not started, or that failed, has no entry

/// Of this thread. QThread's pointers are given again when a thread has ended.
int threadNumber()
{
    static std::atomic<int> last{0};
    thread_local const int number = ++last;
    return number;
}

/// A load's name among the others.
QString nameOf(const QString &key)
{
    return hasFault("KeysCut") ? key.chopped(1) : key;
}

} // namespace

VarnelInitStateMgr *VarnelInitStateMgr::instance()
{
    static VarnelInitStateMgr instance;
    return &instance;
}

bool VarnelInitStateMgr::StartInit(const QString &key)
{
    const std::lock_guard lock(s_mutex);
    const auto load = s_loads.constFind(nameOf(key));
    if (load != s_loads.constEnd()) {
        const bool isStarter = load->starter == threadNumber();
        if (load->isDone)
            return hasFault("SuccessForgotten");
        return (isStarter && hasFault("StarterStartsAgain")) || (!isStarter && hasFault("EachThreadStarts"));
    }
    s_loads.insert(nameOf(key), {false, threadNumber()});
    return true;
}

bool VarnelInitStateMgr::FinishInit(const QString &key, bool succeeded, bool)
{
    const std::lock_guard lock(s_mutex);
    if (succeeded)
        s_loads[nameOf(key)].isDone = true;
    else if (!hasFault("FailedLoadStays"))
        s_loads.remove(nameOf(key));
    return true;
}

bool VarnelInitStateMgr::IsInited(const QString &key)
{
    const std::lock_guard lock(s_mutex);
    const auto load = s_loads.constFind(nameOf(key));
    return load != s_loads.constEnd() && (load->isDone || hasFault("InitedTooEarly"));
}
