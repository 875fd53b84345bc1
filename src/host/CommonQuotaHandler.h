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
    /// Made by the host, before the first WebMsgCenter::instance().
    explicit CommonQuotaHandler(QObject *parent = nullptr);
    ~CommonQuotaHandler() override;

    /// Never null; valid until the process ends. Called from any thread.
    static CommonQuotaHandler *instance();

    /// Starts streaming the symbols through sigTickDataUpdate. The library passes true and level 0, on the
    /// user-interface thread, also for symbols that already stream, that are unknown, or for none; it never asks to
    /// stop. It ignores the result. A tick that is emitted on this thread before this returns does not reach a view
    /// that subscribes for the first time: emit it afterwards.
    virtual int SubscribeQuota(const QStringList &symbols, bool subscribe, int level) = 0;

    /// The latest quote under the host's field names, which pages get as it is; empty for an unknown symbol. Values
    /// must be ones that JSON can express, others become null. The library passes level 0. Called on threads of page
    /// calls and on the message center's thread, possibly at once.
    virtual QMap<QString, QVariant> GetQuotaSnapshot(const QString &symbol, int level) = 0;

    /// Shares, bonds or contracts in one unit of the quoted quantities; pages get it as "qtyUnit", also what is given
    /// for an unknown symbol. Called on threads of page calls, possibly at once.
    virtual int GetQtyUnit(const QString &symbol) = 0;

signals:
    /// A new quote of a streamed symbol: the whole quote, in the form of GetQuotaSnapshot. May be emitted from any
    /// thread; the library takes it to the user-interface thread.
    void sigTickDataUpdate(const QString &symbol, const QVariantMap &data);
};
