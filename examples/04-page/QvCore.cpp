// The token of the login.
#include "QvCore.h"

QvCore *QvCore::instance()
{
    static QvCore instance;
    return &instance;
}

QString QvCore::getCurrentToken()
{
    return "token-of-the-login";
}
