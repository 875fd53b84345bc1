#include "VarnelInitStateMgr.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace {

const QString kKey = QStringLiteral("load");

VarnelInitStateMgr &states()
{
    return *VarnelInitStateMgr::instance();
}

} // namespace

TEST(InitStates, ALoadIsStartedOnceUntilItIsFinished)
{
    EXPECT_FALSE(states().IsInited(kKey));
    EXPECT_TRUE(states().StartInit(kKey));
    EXPECT_FALSE(states().StartInit(kKey));
    EXPECT_FALSE(states().IsInited(kKey));
    EXPECT_TRUE(states().FinishInit(kKey, true, true));
    EXPECT_TRUE(states().IsInited(kKey));
    EXPECT_FALSE(states().StartInit(kKey));
}

TEST(InitStates, ALoadThatFailedMayBeStartedAgain)
{
    states().StartInit(kKey);
    EXPECT_TRUE(states().FinishInit(kKey, false, true));
    EXPECT_FALSE(states().IsInited(kKey));
    EXPECT_TRUE(states().StartInit(kKey));
}

TEST(InitStates, ALoadThatWasNotStartedCannotBeFinished)
{
    EXPECT_FALSE(states().FinishInit(kKey, true, true));
    EXPECT_FALSE(states().IsInited(kKey));
    states().StartInit(kKey);
    states().FinishInit(kKey, true, true);
    EXPECT_FALSE(states().FinishInit(kKey, false, true));
    EXPECT_TRUE(states().IsInited(kKey));
}

TEST(InitStates, LoadsAreIndependent)
{
    states().StartInit(kKey);
    states().FinishInit(kKey, true, true);
    EXPECT_FALSE(states().IsInited(QStringLiteral("other")));
    EXPECT_TRUE(states().StartInit(QStringLiteral("other")));
}

TEST(InitStates, OnlyOneThreadStartsTheLoad)
{
    std::atomic<int> started{0};
    std::vector<std::thread> threads;
    threads.reserve(8);
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([&] { started += states().StartInit(kKey); });
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(1, started);
}
