#pragma once

#include <functional>
#include <memory>

namespace sim {

/// Reads standard input on a thread of its own, because Windows cannot tell when there is something to read. The thread
/// may still wait for input when the process ends. Made and destroyed on the user-interface thread; one in a process.
class StepInput {
public:
    enum Event { Line, End };

    /// The listener is called on the user-interface thread.
    explicit StepInput(std::function<void(Event)> listener);
    ~StepInput();

private:
    class Mailbox;
    const std::shared_ptr<Mailbox> m_mailbox;
};

} // namespace sim
