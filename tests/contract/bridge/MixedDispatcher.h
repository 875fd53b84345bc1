#pragma once

#include <QObject>
#include <QStringList>
#include <QVariantList>

/// Methods that could be mistaken for handlers.
class MixedDispatcher : public QObject {
    Q_OBJECT
public:
    QStringList calls;

    Q_INVOKABLE void one(const QVariantList &args) { calls << args.value(0).toString(); }
    Q_INVOKABLE void none() { calls << QStringLiteral("none"); }
    Q_INVOKABLE void listAndNumber(const QVariantList &, int) { calls << QStringLiteral("listAndNumber"); }
    Q_INVOKABLE void numberAndList(int, const QVariantList &) { calls << QStringLiteral("numberAndList"); }
    Q_INVOKABLE void text(const QString &) { calls << QStringLiteral("text"); }
};
