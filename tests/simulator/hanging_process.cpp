#include "Shutdown.h"

#include <QCoreApplication>

#include <chrono>
#include <cstdio>
#include <thread>

namespace {

void say(const char *line)
{
    std::puts(line);
    std::fflush(stdout);
}

} // namespace

/// Ends its event loop on signals as the simulator does, and then hangs.
int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    sim::quitOnSignals();
    say("ready");
    QCoreApplication::exec();
    say("hanging");
    while (true)
        std::this_thread::sleep_for(std::chrono::hours(1));
}
