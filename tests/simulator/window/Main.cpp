#include <QApplication>

#include <gmock/gmock.h>

int main(int argc, char *argv[])
{
    testing::InitGoogleMock(&argc, argv);
    // Chromium runs as root and without a display here.
    qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    qputenv("QT_QUICK_BACKEND", "software");
    QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
