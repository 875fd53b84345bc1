#pragma once

#include "HostApi.h"

#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantMap>

/// The host's quotes. The host derives from it and owns the instance. The virtual operations keep their
/// order: hosts and libraries built apart meet by it.
class VARNEL_HOST_API CommonQuotaHandler : public QObject {
    Q_OBJECT
public:
    explicit CommonQuotaHandler(QObject *parent = nullptr);
    ~CommonQuotaHandler() override;

    /// Never null; valid until the process ends. Called from any thread.
    static CommonQuotaHandler *instance();

    /// Starts streaming the symbols through sigTickDataUpdate. The library passes true and level 0, on
    /// the user-interface thread, also for symbols that already stream; it never asks to stop.
    virtual int SubscribeQuota(const QStringList &symbols, bool subscribe, int level) = 0;

    /// The latest quote under the host's field names; empty for an unknown symbol. The library passes
    /// level 0. Called on threads of page calls and on the message center's thread, possibly at once.
    virtual QMap<QString, QVariant> GetQuotaSnapshot(const QString &symbol, int level) = 0;

    /// Shares (or contracts) in one unit of the quoted quantities. Called on threads of page calls.
    virtual int GetQtyUnit(const QString &symbol) = 0;

signals:
    /// A new quote of a streamed symbol. May be emitted from any thread.
    void sigTickDataUpdate(const QString &symbol, const QVariantMap &data);
};
