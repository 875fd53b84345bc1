#include "hostcheck/Waiting.h"
#include "hostcheck/checks/Tables.h"

#include "VarnelInitStateMgr.h"

#include <QUuid>

#include <atomic>

namespace HostCheck {

namespace {

VarnelInitStateMgr &states()
{
    return present(VarnelInitStateMgr::instance());
}

/// A key of no load of the terminal's, and of no other check.
QString freshKey()
{
    return QStringLiteral("VarnelHostCheck") + QUuid::createUuid().toString(QUuid::WithoutBraces);
}

QString given(bool answer)
{
    return answer ? QStringLiteral("true") : QStringLiteral("false");
}

void startsOnce(const KnownValues &)
{
    const QString key = freshKey();
    const bool first = states().StartInit(key);
    expect(first, "StartInit tells the first caller to load", given(first));
    const bool second = states().StartInit(key);
    expect(!second, "StartInit tells nobody else to load while a load is under way", given(second));
}

void startsOnOneThread(const KnownValues &)
{
    constexpr int kThreads = 8;
    const QString key = freshKey();
    VarnelInitStateMgr &manager = states();
    std::atomic<int> starters{0};
    onThreads(kThreads, [&](int) { starters += manager.StartInit(key) ? 1 : 0; });
    expect(starters == 1, "of several threads at once StartInit tells one to load",
           QStringLiteral("%1 of %2 threads").arg(starters).arg(kThreads));
}

void isInitedAfterSuccess(const KnownValues &)
{
    const QString key = freshKey();
    const bool before = states().IsInited(key);
    states().StartInit(key);
    const bool meanwhile = states().IsInited(key);
    expect(!before && !meanwhile, "IsInited is false until the load has succeeded", given(before || meanwhile));
    states().FinishInit(key, true, true);
    expect(states().IsInited(key), "IsInited is true after a load that succeeded", given(false));
}

void staysInited(const KnownValues &)
{
    const QString key = freshKey();
    states().StartInit(key);
    states().FinishInit(key, true, true);
    const bool again = states().StartInit(key);
    expect(!again, "StartInit tells nobody to load again after a load that succeeded", given(again));
}

void startsAgainAfterFailure(const KnownValues &)
{
    const QString key = freshKey();
    states().StartInit(key);
    states().FinishInit(key, false, true);
    expect(!states().IsInited(key), "IsInited is false after a load that failed", given(true));
    const bool again = states().StartInit(key);
    expect(again, "StartInit lets a load that failed be started again", given(again));
}

void keysAreApart(const KnownValues &)
{
    const QString key = freshKey();
    states().StartInit(key + QLatin1Char('a'));
    const bool other = states().StartInit(key + QLatin1Char('b'));
    expect(other, "a load does not depend on those under other keys", given(other));
}

} // namespace

CheckTable initStateChecks()
{
    return {
        {"init-states.start-once", "The permissions are never loaded, or loaded twice.", startsOnce},
        {"init-states.start-on-one-thread", "The permissions are loaded twice at once.", startsOnOneThread},
        {"init-states.inited-after-success",
         "Pages are told that they lack a permission, or the permissions are loaded with each question.",
         isInitedAfterSuccess},
        {"init-states.stay-inited", "The permissions are loaded again, and each entry stands there twice.",
         staysInited},
        {"init-states.start-again-after-failure",
         "After one failed load pages have no permissions until the terminal is restarted.", startsAgainAfterFailure},
        {"init-states.keys-apart", "Another load of the terminal keeps the permissions from being loaded.",
         keysAreApart},
    };
}

} // namespace HostCheck
