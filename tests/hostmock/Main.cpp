#include "EndProcess.h"

#include <QApplication>
#include <gmock/gmock.h>

// For every test executable that links the mock. There is one application; it is destroyed at the end of main(), before
// the statics of the library and of the mock.
int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // a fork copies only one thread, and hosts have several
    testing::InitGoogleMock(&argc, argv);
    QApplication application(argc, argv);
    return endProcess(RUN_ALL_TESTS());
}
