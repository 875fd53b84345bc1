#include "../EndProcess.h"

#include <QApplication>

#include <gmock/gmock.h>

int main(int argc, char *argv[])
{
    testing::InitGoogleMock(&argc, argv);
    QApplication application(argc, argv);
    return endProcess(RUN_ALL_TESTS());
}
