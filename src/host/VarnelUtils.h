#pragma once

#include "HostApi.h"
#include "HostTypes.h"

#include <QList>
#include <QString>
#include <QVariantMap>

class QvPresenterClass;

/// The host's display mode, and its queries to the server.
class VARNEL_HOST_API VarnelUtils {
public:
    /// The display mode of record cells at this moment. Read when a data dispatcher is created, on the thread that
    /// creates it; all views use the value that was read last.
    static ShowType GetCurrentShowType();

    /// Asks the server through the presenter and waits for the answer, one map for each record; error stays empty on
    /// success, and gets the reason otherwise. msgType is Varnel_MsgType::QueryAlgoPermissionsByConditionRequest,
    /// conditions are Tessar_Fields::UserAccount::userID and Algo_Fields::VarnelStrategy::supportType. Called while the
    /// message center is being constructed and on threads of page calls: it blocks, and must not spin an event loop.
    static QList<QVariantMap> QueryDatasFromServer(QvPresenterClass *presenter, const QString &msgType,
                                                   const QVariantMap &conditions, QueryDataMode mode, QString &error);
};
