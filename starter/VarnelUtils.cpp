// The terminal must put here: the display mode of its tables and its queries of the server.
#include "VarnelUtils.h"

ShowType VarnelUtils::GetCurrentShowType()
{
    return PlainShowType;
}

QList<QVariantMap> VarnelUtils::QueryDatasFromServer(QvPresenterClass *, const QString &, const QVariantMap &,
                                                     QueryDataMode, QString &error)
{
    error = QStringLiteral("this terminal has no server");
    return {};
}
