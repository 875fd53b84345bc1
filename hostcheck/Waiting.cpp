#include "hostcheck/Waiting.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QTimer>

#include <condition_variable>
#include <mutex>

namespace HostCheck {

namespace {

int s_patience = 5000;

} // namespace

int patience()
{
    return s_patience;
}

void setPatience(int milliseconds)
{
    s_patience = milliseconds;
}

bool waitUntil(const std::function<bool()> &holds)
{
    QTimer alarm; // wakes the wait below when no other event comes
    alarm.setSingleShot(true);
    alarm.start(patience());
    while (!holds()) {
        if (!alarm.isActive())
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

void wakeMainThread()
{
    QAbstractEventDispatcher::instance(QCoreApplication::instance()->thread())->wakeUp();
}

void onThreads(int count, const std::function<void(int)> &function)
{
    // All of them start when the last one is ready, so that their calls meet.
    std::mutex mutex;
    std::condition_variable allReady;
    int ready = 0;
    std::vector<std::thread> threads;
    threads.reserve(size_t(count));
    for (int number = 0; number < count; ++number) {
        threads.emplace_back([&, number] {
            {
                std::unique_lock lock(mutex);
                ++ready;
                allReady.notify_all();
                allReady.wait(lock, [&] { return ready == count; });
            }
            function(number);
        });
    }
    for (std::thread &thread : threads)
        thread.join();
}

} // namespace HostCheck
