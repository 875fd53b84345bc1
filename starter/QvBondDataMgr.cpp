// The terminal must put here: its bond data.
#include "QvBondDataMgr.h"

QvBondDataMgr *QvBondDataMgr::instance()
{
    static QvBondDataMgr instance;
    return &instance;
}

QString QvBondDataMgr::GetSingelBondBaseInfo(const QString &, stuBaseInfo &)
{
    return QStringLiteral("-1"); // any text but "0" says that there is no such bond
}
