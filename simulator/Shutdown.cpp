#include "Shutdown.h"

#include <QCoreApplication>

#include <atomic>

#ifdef Q_OS_WIN
#    include <QWinEventNotifier>

#    include <windows.h>
#else
#    include <QSocketNotifier>

#    include <csignal>
#    include <fcntl.h>
#    include <unistd.h>
#endif

namespace sim {

namespace {

constexpr int kKilledBySignal = 128; // what shells add to a signal's number

std::atomic<bool> s_asked{false}; // to end

} // namespace

#ifdef Q_OS_WIN

namespace {

HANDLE s_event;

/// The system calls this on a thread of its own. Nothing of Qt is used there: Qt would watch the thread, and clean up
/// after it while the process ends.
BOOL WINAPI onConsoleEvent(DWORD event)
{
    constexpr int kInterrupt = 2; // the number of SIGINT, which Windows has no signal for
    if (s_asked.exchange(true))
        TerminateProcess(GetCurrentProcess(), kKilledBySignal + kInterrupt);
    SetEvent(s_event);
    if (event == CTRL_CLOSE_EVENT)
        Sleep(INFINITE); // once this returns the system ends the process; the main thread does so earlier, and in order
    return TRUE;
}

} // namespace

void quitOnSignals()
{
    s_event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    if (!s_event)
        qFatal("No event for Ctrl-C");
    auto *notifier = new QWinEventNotifier(s_event, qApp);
    QObject::connect(notifier, &QWinEventNotifier::activated, qApp, [notifier] {
        notifier->setEnabled(false);
        QCoreApplication::quit();
    });
    SetConsoleCtrlHandler(onConsoleEvent, TRUE);
}

#else

namespace {

static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler must not wait for a lock");

int s_pipe[2]; // a signal handler may do little more than write to a pipe

void onSignal(int number)
{
    if (s_asked.exchange(true))
        _exit(kKilledBySignal + number);
    const char byte = 0;
    const ssize_t ignored = write(s_pipe[1], &byte, 1); // cannot fail: the pipe is empty
    Q_UNUSED(ignored)
}

} // namespace

void quitOnSignals()
{
    if (pipe2(s_pipe, O_CLOEXEC | O_NONBLOCK) != 0)
        qFatal("No pipe for signals");
    auto *notifier = new QSocketNotifier(s_pipe[0], QSocketNotifier::Read, qApp);
    QObject::connect(notifier, &QSocketNotifier::activated, qApp, [notifier] {
        notifier->setEnabled(false);
        QCoreApplication::quit();
    });

    struct sigaction action = {};
    action.sa_handler = onSignal;
    action.sa_flags = SA_RESTART;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

#endif

} // namespace sim
