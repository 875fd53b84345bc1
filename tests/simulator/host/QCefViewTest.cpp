#include "VarnelCefView.h"
#include "host/QCefViewAccess.h"

#include <QVector>

#include <gtest/gtest.h>

#include <mutex>
#include <numeric>
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
            EXPECT_EQ(QStringLiteral("e"), event.eventName());
            const std::lock_guard lock(mutex);
            seen.append({std::this_thread::get_id(), event.arguments().value(0).toInt()});
        });
    }

    /// What a thread has broadcast.
    QVector<int> seenOf(std::thread::id thread) const
    {
        QVector<int> numbers;
        for (const auto &[id, number] : seen) {
            if (id == thread)
                numbers.append(number);
        }
        return numbers;
    }

    std::unique_ptr<VarnelCefView> view = std::make_unique<VarnelCefView>();
    std::mutex mutex;
    QVector<QPair<std::thread::id, int>> seen;
};

} // namespace

TEST_F(QCefViewTest, EventsReachThePageDuringTheBroadcastAndInOrder)
{
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(view->broadcastEvent(event(i)));
        EXPECT_EQ(i + 1, seen.size());
    }
    EXPECT_EQ(QVector<int>({0, 1, 2}), seenOf(std::this_thread::get_id()));
}

TEST_F(QCefViewTest, AnyThreadMayBroadcast)
{
    constexpr int kEach = 200;
    QVector<int> numbers(kEach);
    std::iota(numbers.begin(), numbers.end(), 0);
    std::thread other([&] {
        for (const int number : qAsConst(numbers))
            view->broadcastEvent(event(number));
    });
    for (const int number : qAsConst(numbers))
        view->broadcastEvent(event(number));
    const std::thread::id others = other.get_id();
    other.join();
    EXPECT_EQ(numbers, seenOf(others));
    EXPECT_EQ(numbers, seenOf(std::this_thread::get_id()));
}

TEST_F(QCefViewTest, AViewWithoutAPageAcceptsEvents)
{
    VarnelCefView bare;
    EXPECT_TRUE(bare.broadcastEvent(event(1)));
}
