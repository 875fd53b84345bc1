#pragma once

#include <QHash>
#include <QString>
#include <QVariantList>

class QObject;
struct QMetaObject;

/// The handlers of a dispatcher's class by name. Calls them as QMetaObject::invokeMethod does, with the same result for
/// every name, but without Qt's search by name, which takes longer than the rest of a short call.
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
