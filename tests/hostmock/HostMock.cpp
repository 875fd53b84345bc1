#include "HostMock.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>

namespace {

std::atomic<HostMock *> installed{nullptr};

} // namespace

HostMock::HostMock()
{
    HostMock *expected = nullptr;
    if (!installed.compare_exchange_strong(expected, this)) {
        std::fputs("HostMock: a second one was created while the first is alive\n", stderr);
        std::abort();
    }
}

// No call arrives any more when the destructors of the members verify the expectations.
HostMock::~HostMock()
{
    installed = nullptr;
}

HostMock &HostMock::current(const char *operation)
{
    if (HostMock *mock = installed)
        return *mock;
    std::fprintf(stderr, "HostMock: host call without a mock: %s\n", operation);
    std::abort();
}
