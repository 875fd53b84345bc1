#pragma once

#include <functional>
#include <thread>
#include <vector>

namespace HostCheck {

/// How long a check waits for something to come, in milliseconds. Shorter than the time limit of a check.
int patience();
void setPatience(int milliseconds);

/// Turns the event loop of this thread until the condition holds. False when it does not within the patience.
bool waitUntil(const std::function<bool()> &holds);

/// Makes a waitUntil() on the main thread look at its condition again. Any thread.
void wakeMainThread();

/// Runs the function on that many threads at once and waits for all of them; the number of the thread is its argument.
void onThreads(int count, const std::function<void(int number)> &function);

} // namespace HostCheck
