#include "bridge/HandlerTable.h"

#include <QMetaMethod>
#include <QObject>
#include <QThread>

HandlerTable::HandlerTable(const QMetaObject &dispatcherClass) : m_class(dispatcherClass)
{
    for (int i = dispatcherClass.methodOffset(); i < dispatcherClass.methodCount(); ++i) {
        const QMetaMethod method = dispatcherClass.method(i);
        if (method.parameterCount() == 1 && method.parameterType(0) == QMetaType::QVariantList)
            m_methodIndices.insert(QString::fromLatin1(method.name()), i);
    }
}

bool HandlerTable::invoke(QObject *dispatcher, const QString &name, const QVariantList &args) const
{
    const auto found = m_methodIndices.constFind(name);
    if (found != m_methodIndices.cend() && dispatcher->metaObject() == &m_class &&
        dispatcher->thread() == QThread::currentThread()) {
        void *arguments[] = {nullptr, const_cast<QVariantList *>(&args)}; // no result; handlers take it by const &
        QMetaObject::metacall(dispatcher, QMetaObject::InvokeMetaMethod, *found, arguments);
        return true;
    }
    // Qt does the rest: calls to a host's own subclass, queued calls, the warning about an unknown name, and names that
    // Qt accepts although they differ, such as one with a blank in front.
    return QMetaObject::invokeMethod(dispatcher, name.toStdString().c_str(), Qt::AutoConnection,
                                     Q_ARG(const QVariantList &, args));
}
