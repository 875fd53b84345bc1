// A run of its own that opens the settings of one account:
//   settings_process ACCOUNT get KEY…          prints each value on a line
//   settings_process ACCOUNT save KEY VALUE…
#include "msgcenter/WebMsgCenter.h"

#include "HostMock.h"

#include <QApplication>
#include <QTextStream>

using testing::Return;

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 3)
        return 2;

    static testing::NiceMock<HostMock> host; // outlives the message center
    EXPECT_CALL(host, CBusinessDataBase_GetLoginAccount()).WillRepeatedly(Return(arguments.at(1)));
    WebMsgCenter *center = WebMsgCenter::instance();
    if (arguments.at(2) == QStringLiteral("save")) {
        for (int i = 3; i + 1 < arguments.size(); i += 2)
            center->saveSetting(arguments.at(i), arguments.at(i + 1));
    } else {
        QTextStream out(stdout);
        out.setCodec("UTF-8");
        for (int i = 3; i < arguments.size(); ++i)
            out << center->getSetting(arguments.at(i)) << '\n';
    }
    return 0;
}
