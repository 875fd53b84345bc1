#include "Await.h"
#include "VarnelCefView.h"
#include "host/QCefViewAccess.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <thread>

namespace {

QCefEvent event(int number)
{
    QCefEvent event(QStringLiteral("e"));
    event.arguments().append(number);
    return event;
}

class QCefViewTest : public testing::Test {
protected:
    QCefViewTest()
    {
        QCefViewAccess::setPage(*view, [this](const QCefEvent &event) {
            EXPECT_EQ(std::this_thread::get_id(), mine);
            EXPECT_EQ(QStringLiteral("e"), event.eventName());
            seen.append(event.arguments().value(0).toInt());
        });
    }

    const std::thread::id mine = std::this_thread::get_id();
    std::unique_ptr<VarnelCefView> view = std::make_unique<VarnelCefView>();
    QVector<int> seen;
};

} // namespace

TEST_F(QCefViewTest, EventsReachThePageAfterTheBroadcastAndInOrder)
{
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(view->broadcastEvent(event(i)));
    EXPECT_TRUE(seen.isEmpty()); // never during the broadcast
    QCoreApplication::processEvents();
    EXPECT_EQ(QVector<int>({0, 1, 2}), seen);
}

TEST_F(QCefViewTest, AnyThreadMayBroadcast)
{
    constexpr int kEach = 200;
    std::thread other([&] {
        for (int i = 0; i < kEach; ++i)
            view->broadcastEvent(event(i));
    });
    for (int i = 0; i < kEach; ++i)
        view->broadcastEvent(event(kEach + i));
    other.join();
    ASSERT_TRUE(await([&] { return seen.size() == 2 * kEach; }));
    QVector<int> theirs;
    for (const int number : qAsConst(seen)) {
        if (number < kEach)
            theirs.append(number);
    }
    EXPECT_TRUE(std::is_sorted(theirs.begin(), theirs.end()));
    EXPECT_EQ(kEach, theirs.size());
}

TEST_F(QCefViewTest, EventsOfACallReachThePageAtTheEndOfTheCall)
{
    view->broadcastEvent(event(0));
    {
        const QCefViewAccess::Call underWay(*view);
        view->broadcastEvent(event(1));
        std::thread([&] { view->broadcastEvent(event(2)); }).join();
        EXPECT_TRUE(seen.isEmpty()); // never during the broadcast
    }
    EXPECT_EQ(QVector<int>({0, 1, 2}), seen);
    view->broadcastEvent(event(3)); // after the call, queued again
    EXPECT_EQ(3, seen.size());
    QCoreApplication::processEvents();
    EXPECT_EQ(QVector<int>({0, 1, 2, 3}), seen);
}

TEST_F(QCefViewTest, QueuedEventsOfADeletedViewAreDropped)
{
    view->broadcastEvent(event(1));
    view.reset();
    QCoreApplication::processEvents();
    EXPECT_TRUE(seen.isEmpty());
}

TEST_F(QCefViewTest, AViewWithoutAPageAcceptsEvents)
{
    VarnelCefView bare;
    EXPECT_TRUE(bare.broadcastEvent(event(1)));
    QCoreApplication::processEvents();
}
