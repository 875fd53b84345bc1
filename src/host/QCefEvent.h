#pragma once

#include "HostApi.h"

#include <QString>
#include <QVariantList>

/// One event for the page of a view: a name and its arguments. A copyable value without thread ties.
class VARNEL_HOST_API QCefEvent {
public:
    /// An event of that name without arguments. The name is that of a reply or a push of the page protocol.
    explicit QCefEvent(const QString &name);

    QString eventName() const; ///< for the host: the name given to the constructor

    /// The library appends the page's arguments here, before the event is broadcast: none, one or two texts.
    QVariantList &arguments();
    const QVariantList &arguments() const; ///< for the host, to read them

private:
    QString m_name;
    QVariantList m_arguments;
};
