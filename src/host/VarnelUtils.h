#pragma once

#include "HostApi.h"
#include "HostTypes.h"

#include <QList>
#include <QString>
#include <QVariantMap>

class QvPresenterClass;

class VARNEL_HOST_API VarnelUtils {
public:
    /// The display mode of record cells at this moment. Read when a data dispatcher is created, on the
    /// thread that creates it.
    static ShowType GetCurrentShowType();

    /// Asks the server through the presenter and waits for the answer; error stays empty on success.
    /// Called while the message center is being constructed and on threads of page calls: it blocks, and
    /// must not spin an event loop.
    static QList<QVariantMap> QueryDatasFromServer(QvPresenterClass *presenter, const QString &msgType,
                                                   const QVariantMap &conditions, QueryDataMode mode, QString &error);
};
