#include "bridge/DataThread.h"
#include "bridge/TradeThread.h"
#include "dataservice/DataProcess.h"
#include "msgcenter/WebMsgCenter.h"
#include "trade/TradeProcess.h"

#include "VarnelCefView.h"

#include <QApplication>

#include <cstdio>

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    VarnelCefView view;
    WebMsgCenter::instance()->reg(&view);
    DataThread data(&view);
    TradeThread trade(&view);
    const bool handled = data.onInvokeMethod(0, 0, QStringLiteral("Data_getToken_REQ"), {QStringLiteral("u1")}) &&
                         trade.onInvokeMethod(0, 0, QStringLiteral("Trade_reqCancelOrder_REQ"), {QStringLiteral("u2")});
    WebMsgCenter::instance()->unReg(&view);
    std::puts(qPrintable(DataProcess::instance()->processToken(QStringLiteral("u3"))));
    return handled && TradeProcess::instance() ? 0 : 1;
}
