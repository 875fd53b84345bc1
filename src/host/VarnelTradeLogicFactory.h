#pragma once

#include "HostApi.h"
#include "HostTypes.h"

#include <QString>
#include <QVariant>

/// The host's basic trade requests. Called on threads of page calls; the host owns the instance.
class VARNEL_HOST_API VarnelTradeLogicFactory {
public:
    /// Never null; valid until the process ends.
    static VarnelTradeLogicFactory *GetInstance();

    /// Sends one request and waits for the outcome; the library ignores the result. Request and response
    /// hold QList<QMap<QString, QVariant>>; a QVariantList of maps is read as well. caller names who asks.
    int SendRequestSync(const Basic_Trade_REQ_Type &type, const QVariant &request, const QString &caller,
                        QVariant &response);
};
