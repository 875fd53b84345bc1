#pragma once

#include <QObject>
#include <QStringList>
#include <QVariantList>

/// A dispatcher that records what was called.
class Dispatcher : public QObject {
    Q_OBJECT
public:
    QStringList calls;

    Q_INVOKABLE void handle(const QVariantList &args) { calls << QStringLiteral("handle ") + args.value(0).toString(); }
    Q_INVOKABLE void other(const QVariantList &args) { calls << QStringLiteral("other ") + args.value(0).toString(); }
    Q_INVOKABLE void ofAnotherKind(const QString &text) { calls << text; }

public slots:
    void slot(const QVariantList &args) { calls << QStringLiteral("slot ") + args.value(0).toString(); }
};

/// A class that a host might derive.
class OwnDispatcher : public Dispatcher {
    Q_OBJECT
public:
    Q_INVOKABLE void handle(const QVariantList &) { calls << QStringLiteral("its own"); }
};
