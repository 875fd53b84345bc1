#pragma once

#include <QHash>
#include <QString>
#include <QVariantList>

class QObject;
struct QMetaObject;

/// The handlers of a dispatcher's class by name. Calls them as QMetaObject::invokeMethod does, with the same answer for
/// every name, but without its search, which costs more than all else of a short call.
/// Constant after construction; any thread.
class HandlerTable {
public:
    /// The invokable methods of the class itself whose one parameter is a QVariantList.
    explicit HandlerTable(const QMetaObject &dispatcherClass);

    /// Runs the handler of that name, or queues it when the dispatcher lives on another thread. False when there is
    /// none.
    bool invoke(QObject *dispatcher, const QString &name, const QVariantList &args) const;

private:
    const QMetaObject &m_class;
    QHash<QString, int> m_methodIndices;
};
