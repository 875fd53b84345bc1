#include <QApplication>
#include <gmock/gmock.h>

#include <cstdio>

#ifdef Q_OS_WIN
#    include <windows.h>
#endif

// For every test executable that links the mock. There is one application; it is destroyed at the end of main(), before
// the statics of the library and of the mock.
int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // a fork copies only one thread, and hosts have several
    testing::InitGoogleMock(&argc, argv);
    QApplication application(argc, argv);
    const int status = RUN_ALL_TESTS();
#ifdef Q_OS_WIN
    // Ends here, without the destructors of statics. Under Wine the process crashes now and then while these run after
    // another thread has used Qt, also in tests that do not load the library.
    std::fflush(nullptr);
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(status));
#endif
    return status;
}
