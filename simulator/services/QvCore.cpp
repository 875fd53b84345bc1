#include "QvCore.h"

#include "platform/Terminal.h"

QvCore *QvCore::instance()
{
    static QvCore core;
    return &core;
}

QString QvCore::getCurrentToken()
{
    return sim::Terminal::instance().login().token;
}
