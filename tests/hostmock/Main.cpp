#include <QApplication>
#include <gmock/gmock.h>

// Of every test executable that links the mock. The application is made once and lives until main() ends,
// so before the statics of the library and of the mock are destroyed.
int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // hosts have threads, and a fork takes only one along
    testing::InitGoogleMock(&argc, argv);
    QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
