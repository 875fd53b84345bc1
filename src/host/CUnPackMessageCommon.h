#pragma once

#include "HostApi.h"

#include <QVariant>
#include <QVariantMap>

/// Reads the body of one message. Lives on the caller's stack, used on one thread; the library reads
/// events with it on the bus thread.
class VARNEL_HOST_API CUnPackMessageCommon {
public:
    CUnPackMessageCommon();
    ~CUnPackMessageCommon();

    /// Takes the body to read; the library always passes false and ignores the result.
    bool SetUnPackMsg(const QVariant &message, bool flag);

    /// The first row; an empty map when there is none.
    QVariantMap GetRowValue();

private:
    Q_DISABLE_COPY(CUnPackMessageCommon)
    class Private;
    Private *const d;
};
