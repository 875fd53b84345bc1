#include "recording/StepInput.h"

#include "platform/Wakeup.h"

#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include <unistd.h>

namespace sim {

/// What the thread has read. It outlives the StepInput if the thread still waits for input.
class StepInput::Mailbox {
public:
    explicit Mailbox(std::function<void(Event)> listener) : m_listener(std::move(listener))
    {
        m_wakeup.emplace([this] { deliver(); });
    }

    void add(Event event)
    {
        const std::lock_guard lock(m_mutex);
        m_events.push_back(event);
        if (m_wakeup)
            m_wakeup->post();
    }

    void close()
    {
        const std::lock_guard lock(m_mutex);
        m_wakeup.reset();
    }

private:
    void deliver()
    {
        std::vector<Event> events;
        {
            const std::lock_guard lock(m_mutex);
            events.swap(m_events);
        }
        for (const Event event : events)
            m_listener(event);
    }

    const std::function<void(Event)> m_listener;

    // Guarded by m_mutex
    std::mutex m_mutex;
    std::vector<Event> m_events;
    std::optional<Wakeup> m_wakeup; ///< nothing when nobody listens any more
};

StepInput::StepInput(std::function<void(Event)> listener) : m_mailbox(std::make_shared<Mailbox>(std::move(listener)))
{
    std::thread([mailbox = m_mailbox] {
        // Not a buffered stream: the end of the process would wait for its lock.
        for (char byte = 0; read(STDIN_FILENO, &byte, 1) > 0;) {
            if (byte == '\n')
                mailbox->add(Line);
        }
        mailbox->add(End);
    }).detach();
}

StepInput::~StepInput()
{
    m_mailbox->close();
}

} // namespace sim
