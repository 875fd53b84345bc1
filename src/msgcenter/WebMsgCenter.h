#pragma once

#include "common/Export.h"

#include "HostTypes.h"
#include "QvPresenterClass.h"

#include <QHash>
#include <QList>
#include <QMap>
#include <QReadWriteLock>
#include <QSet>
#include <QStringList>
#include <QThread>
#include <QVariantMap>

#include <mutex>

class QSettings;
class QTimer;
class VarnelCefView;

/// The hub of the library on the host's message bus: view registry, settings and K-line requests.
/// One for the process, made and initialised by the first instance(), destroyed at process exit.
/// It lives on the thread of that first call, which is to be the user-interface thread; what may be called
/// from elsewhere says so. It never owns a view.
class VARNEL_WEBSDK_API WebMsgCenter : public QvPresenterClass {
    Q_OBJECT
public:
    /// The host must have its QApplication, its bus, its quote handler and its login by the first call: the
    /// login account names the folder of the settings file.
    static WebMsgCenter *instance();
    ~WebMsgCenter() override;

    /// Enters a view into the registry. Owning thread only. A view that is entered twice gets each push to
    /// all views twice.
    void reg(VarnelCefView *view);

    /// Removes every entry of the view; to be called before the view goes. Owning thread only. An unknown
    /// pointer is harmless, and none is ever followed.
    void unReg(VarnelCefView *view);

    /// A setting of the login account; empty when it was never saved. Any thread.
    QString getSetting(const QString &key);

    /// Stores a setting; the file is written when the event loop next turns, and at process exit. Any thread.
    void saveSetting(const QString &key, const QString &value);

    /// Asks for candles of a symbol from startTime to stopTime (texts in the host's own form). Sets
    /// clientMsgID before the request is sent; signalKLineDataRcv brings the answer under that id, and
    /// nothing comes when there are no candles. Returns the bus's result code, 0 for sent. Any thread.
    int asyncRequestKLineData(const QString &symbol, const QString &startTime, const QString &stopTime,
                              EMD_KLINE_PERIOD period, QString &clientMsgID);

    /// The same, but waits for the answer and blocks the calling thread. On success returns 0 and data holds
    /// the candles, possibly none; otherwise returns the bus's result code and leaves data as it was.
    int syncRequestKLineData(const QString &symbol, const QString &startTime, const QString &stopTime,
                             EMD_KLINE_PERIOD period, QList<QVariantMap> &data);

    /// For the bus: takes in K-line answers, on any thread, and ignores everything else.
    void ProcQuotationMsg(QString name, QVariant type, QVariant data) override;

    /// For the bus: does nothing, because answers come through ProcQuotationMsg.
    void ProcAsyncCallBack(int id, QString name, QVariant type, QVariant data) override;

    /// The second half of the initialisation.
    Q_INVOKABLE void AsyncInit();

    // Invokable so that another thread can start a timer through a queued call.
    Q_INVOKABLE void AsyncStartEntrustTimer();
    Q_INVOKABLE void AsyncStartExecutionTimer();

signals:
    /// Part of the interface; nothing in the library emits it.
    void signalAssetDetailChanged(const QVariantMap &detailMap);

    /// A K-line answer: the id of its request and one map for each candle, never none. Emitted on the thread
    /// on which the bus delivered it.
    void signalKLineDataRcv(const QString &clientMsgID, const QList<QVariantMap> &dataList);

private:
    WebMsgCenter(const QString &name, QObject *parent);
    void init();

    QMap<VarnelCefView *, QSet<QString>> m_subscribeMap; ///< guarded by m_subscribeMutex
    std::mutex m_subscribeMutex;

    QList<VarnelCefView *> m_viewList; ///< owning thread only; in order of registration, doubles possible

    QThread m_workThread; ///< never started: part of the object's layout

    QSettings *m_settings = nullptr; ///< guarded by m_settingsMutex; a child of this object
    std::mutex m_settingsMutex;

    // Owning thread only. Parentless and never deleted: they outlive the event loop on purpose.
    QTimer *m_entrustTimer = nullptr;
    QTimer *m_executionTimer = nullptr;

    // Pending records by id, and the ids in order of first arrival.
    QHash<QString, QVariantMap> m_entrustCache; ///< guarded by m_entrustMutex
    QStringList m_entrustOrder;                 ///< guarded by m_entrustMutex
    std::mutex m_entrustMutex;
    QHash<QString, QVariantMap> m_executionCache; ///< guarded by m_executionMutex
    QStringList m_executionOrder;                 ///< guarded by m_executionMutex
    std::mutex m_executionMutex;

    QMap<QString, QList<VarnelCefView *>> m_strategySubMap; ///< guarded by m_strategyMutex
    std::mutex m_strategyMutex;

    QReadWriteLock m_permissionLock;
    QMap<QString, QStringList> m_permissionMap; ///< guarded by m_permissionLock
};
