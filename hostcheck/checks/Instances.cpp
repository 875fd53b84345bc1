#include "hostcheck/Waiting.h"
#include "hostcheck/checks/Tables.h"

#include "CBusinessDataBase.h"
#include "CommonQuotaHandler.h"
#include "QvBondDataMgr.h"
#include "QvCore.h"
#include "VarnelInitStateMgr.h"
#include "VarnelTradeLogic.h"
#include "VarnelTradeLogicFactory.h"

#include <array>

namespace HostCheck {

namespace {

struct Instance {
    const char *name;
    const void *(*get)();
};

const Instance instances[] = {
    {"CBusinessDataBase", []() -> const void * { return CBusinessDataBase::GetInstance(); }},
    {"CommonQuotaHandler", []() -> const void * { return CommonQuotaHandler::instance(); }},
    {"QvBondDataMgr", []() -> const void * { return QvBondDataMgr::instance(); }},
    {"QvCore", []() -> const void * { return QvCore::instance(); }},
    {"VarnelInitStateMgr", []() -> const void * { return VarnelInitStateMgr::instance(); }},
    {"VarnelTradeLogic", []() -> const void * { return VarnelTradeLogic::instance(); }},
    {"VarnelTradeLogicFactory", []() -> const void * { return VarnelTradeLogicFactory::GetInstance(); }},
};

void areThere(const KnownValues &)
{
    for (const Instance &instance : instances)
        expect(instance.get(), "every instance() returns an object",
               QStringLiteral("that of %1 returns null").arg(QLatin1String(instance.name)));
}

void stayTheSame(const KnownValues &)
{
    constexpr int kThreads = 4;
    for (const Instance &instance : instances) {
        const void *const first = instance.get();
        std::array<const void *, kThreads> others{};
        onThreads(kThreads, [&](int number) { others[size_t(number)] = instance.get(); });
        for (const void *other : others)
            expect(other == first, "every instance() returns the same object each time, on every thread",
                   QStringLiteral("that of %1 returns different ones").arg(QLatin1String(instance.name)));
    }
}

} // namespace

CheckTable instanceChecks()
{
    return {
        {"instances.present", "The terminal crashes at the first call that needs the missing object.", areThere},
        {"instances.same", "The library works with another object than the terminal, or with one that is gone.",
         stayTheSame},
    };
}

} // namespace HostCheck
