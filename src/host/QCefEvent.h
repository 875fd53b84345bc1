#pragma once

#include "HostApi.h"

#include <QString>
#include <QVariantList>

/// One event for the page of a view: a name and its arguments. A copyable value without thread ties.
class VARNEL_HOST_API QCefEvent {
public:
    explicit QCefEvent(const QString &name);

    QString eventName() const;

    /// The library appends the page's arguments here, before the event is broadcast.
    QVariantList &arguments();
    const QVariantList &arguments() const;

private:
    QString m_name;
    QVariantList m_arguments;
};
