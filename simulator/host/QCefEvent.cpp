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
