#include "QvCore.h"

#include "terminal/Terminal.h"

QvCore *QvCore::instance()
{
    static QvCore core;
    return &core;
}

QString QvCore::getCurrentToken()
{
    return sim::Terminal::instance().login().token;
}
