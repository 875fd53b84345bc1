// The terminal must put here: nothing, if a name and its arguments are all that an event needs.
#include "QCefEvent.h"

QCefEvent::QCefEvent(const QString &name) : m_name(name) {}

QString QCefEvent::eventName() const
{
    return m_name;
}

QVariantList &QCefEvent::arguments()
{
    return m_arguments;
}

const QVariantList &QCefEvent::arguments() const
{
    return m_arguments;
}
