#include "VarnelCefView.h"
#include "bridge/DataThread.h"
#include "msgcenter/WebMsgCenter.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv); // before anything of the library

    VarnelCefView view;
    WebMsgCenter::instance()->reg(&view);
    auto *data = new DataThread(&view); // deleted with the view

    // The page calls CallBridge.invokeMethod('Data_getToken_REQ', 'call-1').
    const bool isKnown = data->onInvokeMethod(0, 0, "Data_getToken_REQ", {"call-1"});
    // The library has called view.broadcastEvent with the reply.

    WebMsgCenter::instance()->unReg(&view);
    return isKnown ? 0 : 1;
}
