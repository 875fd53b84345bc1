#pragma once

#include <condition_variable>
#include <mutex>

/// Threads that call wait() block until open() is called; after that none blocks. Any thread.
class ThreadLatch {
public:
    void open()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_open = true;
        m_opened.notify_all();
    }

    void wait()
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_opened.wait(lock, [this] { return m_open; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_opened;
    bool m_open = false; // guarded by m_mutex
};
