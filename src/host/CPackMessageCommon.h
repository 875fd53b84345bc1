#pragma once

#include "HostApi.h"

#include <QString>
#include <QVariant>

/// Builds the body of one message, field by field. Lives on the caller's stack, used on one thread;
/// several may be in use on different threads at once.
class VARNEL_HOST_API CPackMessageCommon {
public:
    /// Assigns a client message id, unique within the process, readable at once by
    /// GetValue(Tessar_Fields::System::clientMsgID).
    CPackMessageCommon();
    ~CPackMessageCommon();

    /// Adds a field. The library gives each key once, and values of any type: also a list, and for strategy messages
    /// under "panelPtr" a VarnelCefView *, which must come back under its type.
    void AddVaule(const QString &key, const QVariant &value);

    /// The value under the key; an invalid variant when there is none.
    QVariant GetValue(const QString &key) const;

    /// The body in the host's own form, with the fields in the order of their adding: whatever SetUnPackMsg and the
    /// host's services read. It lives on without the pack. The library always passes 0.
    QVariant GetPackedMsg(int format);

private:
    Q_DISABLE_COPY(CPackMessageCommon)
    class Private;
    Private *const d;
};
