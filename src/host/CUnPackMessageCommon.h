#pragma once

#include "HostApi.h"

#include <QVariant>
#include <QVariantMap>

/// Reads the body of one message. Lives on the caller's stack, used on one thread; several may be in use at once. The
/// library reads events with it on the thread on which the bus delivers them.
class VARNEL_HOST_API CUnPackMessageCommon {
public:
    CUnPackMessageCommon();
    ~CUnPackMessageCommon();

    /// Takes the body to read, as the bus passed it to QvPresenterClass::ProcEventMsg. The library always passes false
    /// and ignores the result.
    bool SetUnPackMsg(const QVariant &message, bool flag);

    /// The first row as field names with their values; an empty map when there is none, or the body cannot be read.
    QVariantMap GetRowValue();

private:
    Q_DISABLE_COPY(CUnPackMessageCommon)
    class Private;
    Private *const d;
};
