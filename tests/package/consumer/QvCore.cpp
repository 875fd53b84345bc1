#include "QvCore.h"

QvCore *QvCore::instance()
{
    static QvCore core;
    return &core;
}

QString QvCore::getCurrentToken()
{
    return QStringLiteral("a token of the consumer");
}
