// The terminal must put here: the token of its login.
#include "QvCore.h"

QvCore *QvCore::instance()
{
    static QvCore instance;
    return &instance;
}

QString QvCore::getCurrentToken()
{
    return {};
}
