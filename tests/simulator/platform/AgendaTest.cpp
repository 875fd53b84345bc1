#include "platform/Agenda.h"
#include "platform/SimulatedClock.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <thread>

using namespace sim;

namespace {

const QDateTime kStart(QDate(2025, 3, 3), QTime(10, 0), Qt::UTC);

QDateTime after(int ms)
{
    return kStart.addMSecs(ms);
}

/// Does nothing; its promise is fulfilled on the thread of the action.
struct Seen {
    Agenda::Action action()
    {
        return [this](const QDateTime &time) { promise.set_value({time, std::this_thread::get_id()}); };
    }

    std::promise<std::pair<QDateTime, std::thread::id>> promise;
};

} // namespace

TEST(Agenda, ActionsHappenAtTheirTimesInTheirOrder)
{
    SimulatedClock clock(kStart, 1000);
    clock.pause(); // until all are entered, or the last may come before the others on a slow machine
    Agenda agenda(clock);
    std::vector<int> order;
    Seen last;
    agenda.enter(after(2000), last.action());
    agenda.enter(after(1000), [&](const QDateTime &) { order.push_back(1); });
    agenda.enter(after(1000), [&](const QDateTime &time) {
        EXPECT_EQ(after(1000), time);
        EXPECT_EQ(time, clock.now()); // of this thread: what it announces depends on that time alone
        order.push_back(2);
        agenda.enter(after(1500), [&](const QDateTime &) { order.push_back(3); });
    });
    clock.resume();
    agenda.timeMoved();
    EXPECT_EQ(after(2000), last.promise.get_future().get().first);
    EXPECT_EQ(std::vector<int>({1, 2, 3}), order);
    EXPECT_GE(clock.now(), after(2000));
}

TEST(Agenda, WhoeverNeedsTheWorldAsOfATimePlaysUpToIt)
{
    SimulatedClock clock(kStart, 1e-6);
    Agenda agenda(clock);
    int done = 0;
    agenda.enter(after(1000), [&](const QDateTime &) {
        agenda.playUntil(after(9000)); // from an action it does nothing
        ++done;
    });
    agenda.enter(after(3000), [&](const QDateTime &) { done += 10; });
    agenda.playUntil(after(999));
    EXPECT_EQ(0, done);
    agenda.playUntil(after(1000));
    EXPECT_EQ(1, done);
    agenda.playUntil(after(1000));
    EXPECT_EQ(1, done);
}

TEST(Agenda, SoonMeansNowOnTheAgendasThread)
{
    SimulatedClock clock(kStart, 1e-6);
    Agenda agenda(clock);
    clock.skipTo(after(5000));
    bool isFirst = false;
    agenda.enter(after(4000), [&](const QDateTime &) { isFirst = true; });
    Seen seen;
    agenda.soon(seen.action());
    const auto [time, thread] = seen.promise.get_future().get();
    EXPECT_EQ(after(5000), time);
    EXPECT_NE(std::this_thread::get_id(), thread);
    EXPECT_TRUE(isFirst);
}

TEST(Agenda, WhileItIsHeldNothingHappensSoon)
{
    SimulatedClock clock(kStart, 1e-6);
    Agenda agenda(clock);
    Seen due;
    Seen soon;
    Seen released;
    std::future<std::pair<QDateTime, std::thread::id>> answer = soon.promise.get_future();
    {
        const Agenda::Hold hold(agenda);
        const Agenda::Hold inner(agenda);
        agenda.soon(soon.action());
        agenda.enter(kStart, due.action());
        due.promise.get_future().get(); // on the same thread
        EXPECT_EQ(std::future_status::timeout, answer.wait_for(std::chrono::seconds(0)));
        {
            const Agenda::Release release(agenda);
            answer.get();
        }
        agenda.soon(released.action());
        clock.skipTo(after(5000));
    }
    EXPECT_EQ(after(5000), released.promise.get_future().get().first);
}

TEST(Agenda, EachActionThatComesSoonHasATimeOfItsOwn)
{
    SimulatedClock clock(kStart, 1e-6);
    Agenda agenda(clock);
    Seen second;
    {
        const Agenda::Hold hold(agenda);
        agenda.soon([&](const QDateTime &) { clock.skipTo(after(5000)); });
        agenda.soon(second.action());
    }
    EXPECT_EQ(after(5000), second.promise.get_future().get().first);
}

TEST(Agenda, WhoeverPlaysWaitsForTheEndOfAStandstill)
{
    SimulatedClock clock(kStart, 1e-6);
    Agenda agenda(clock);
    std::atomic<int> done{0};
    std::thread player;
    {
        const Agenda::Standstill still(agenda);
        agenda.enter(kStart, [&](const QDateTime &) { ++done; });
        player = std::thread([&] {
            agenda.playUntil(after(1000));
            EXPECT_EQ(2, done);
        });
        agenda.enter(after(500), [&](const QDateTime &) { ++done; });
        EXPECT_EQ(0, done);
    }
    player.join();
}

TEST(Agenda, AfterStopNothingHappens)
{
    SimulatedClock clock(kStart, 1);
    Agenda agenda(clock);
    agenda.stop();
    agenda.enter(kStart, [](const QDateTime &) { ADD_FAILURE(); });
    agenda.playUntil(after(1000));
}
