#include "QvCore.h"

#include "terminal/Terminal.h"
#include "traffic/Log.h"

QvCore *QvCore::instance()
{
    static QvCore core;
    return &core;
}

QString QvCore::getCurrentToken()
{
    sim::traffic::log().hostCall("QvCore::getCurrentToken");
    return sim::Terminal::instance().login().token;
}
