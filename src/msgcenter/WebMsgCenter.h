#pragma once

#include "common/Export.h"

#include "HostTypes.h"
#include "QvPresenterClass.h"
#include "VarnelCefView.h" // complete, so that its pointer is known to the meta-object system

#include <QHash>
#include <QList>
#include <QMap>
#include <QReadWriteLock>
#include <QSet>
#include <QStringList>
#include <QThread>
#include <QVariantMap>
#include <QVector>

#include <initializer_list>
#include <memory>
#include <mutex>
#include <set>

class QSettings;
class QTimer;
class StrategyCalls;
struct Operation;

/// The hub of the library on the host's message bus: view registry, subscriptions and pushes, settings,
/// permissions, K-line requests and strategy control.
/// One for the process, made and initialised by the first instance(), destroyed at process exit.
/// It lives on the thread of that first call, which must be the user-interface thread. Operations that other threads
/// may call say so. It owns no view. It follows the pointers of registered views and of the view that makes a call, and
/// no others. When a view is destroyed, everything that is kept for the view is dropped: a new view at the same address
/// starts with nothing.
class VARNEL_WEBSDK_API WebMsgCenter : public QvPresenterClass {
    Q_OBJECT
public:
    /// Never null; valid until the process ends. The host must have its QApplication, its bus, its quote handler and
    /// its login by the first call, which must be made on the user-interface thread: the login account names the folder
    /// of the settings file.
    static WebMsgCenter *instance();
    ~WebMsgCenter() override;

    /// Enters a living view into the registry: from now on it gets the pushes to all views. Owning thread only. A
    /// view that is entered twice gets each of them twice, but ticks and strategy messages once.
    void reg(VarnelCefView *view);

    /// Removes every entry of the view. Owning thread only. An unknown pointer is harmless, and none is ever followed.
    /// Subscriptions stay: a view that is entered again goes on getting what it subscribed to.
    void unReg(VarnelCefView *view);

    // Subscriptions, for the view's page. Owning thread only. Each is answered on the view by one event that
    // carries the uuid, and does nothing when the view is null.

    /// Asks the host to stream the quotes of the symbols and pushes them to the view while it is registered. Symbols
    /// are compared exactly as they are written.
    void subscribe(VarnelCefView *view, const QString &uuid, const QStringList &symbols);

    /// Ends the pushes of these symbols to this view; the host goes on streaming them.
    void unsubscribe(VarnelCefView *view, const QString &uuid, const QStringList &symbols);

    /// Ends all of them.
    void unsubscribeAll(VarnelCefView *view, const QString &uuid);

    /// The same without an answer. The pointer is not followed.
    void unsubscribeAll(VarnelCefView *view);

    /// True when the fund account may use the support type; false when either is unknown. Any thread. While no
    /// permissions are loaded it asks the host's server first, and blocks until the server answers.
    bool getPermission(const QString &fundAccount, const QString &supportType);

    /// A setting of the login account; empty when it was never saved. Any thread. Keys are QSettings': "/" separates
    /// section and key, and on Windows case does not count.
    QString getSetting(const QString &key);

    /// Stores a setting; the file is written when the event loop next turns, and at process exit. The empty key is
    /// ignored. Any thread.
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

    /// For the bus: takes in the trading events and the strategy platform's, on any thread. Their pushes are made on
    /// the owning thread, but the notice that the orders are loaded is broadcast before this returns: a registered
    /// view must not go away while it is under way.
    void ProcEventMsg(QString eventName, QVariant type, QVariant data) override;

    /// For the bus: takes in K-line answers, on any thread, and ignores everything else.
    void ProcQuotationMsg(QString name, QVariant type, QVariant data) override;

    /// For the bus: does nothing, because answers come through ProcQuotationMsg.
    void ProcAsyncCallBack(int id, QString name, QVariant type, QVariant data) override;

    // Strategy control, for the page of the view. arguments: those of the page, uuid first. Each call is sent to the
    // strategy platform over the bus, which takes a copy; a call with too few arguments does nothing. Owning thread
    // only.

    /// 1 file path, 2 language (integer), 3 fund accounts (comma list), 4 basic parameters, 5 extension. All needed.
    Q_INVOKABLE void Vlx_startStrategy_REQ(const QList<QVariant> &arguments, VarnelCefView *panelPtr);

    /// 1 strategy id, 2 extension. All needed.
    Q_INVOKABLE void Vlx_stopStrategy_REQ(const QList<QVariant> &arguments, VarnelCefView *panelPtr);

    /// 1 custom-message id, 2 "1" to get the messages of that id, anything else to get them no more. All needed. Never
    /// answered.
    Q_INVOKABLE void Vlx_subStrategyMsg_REQ(const QList<QVariant> &arguments, VarnelCefView *panelPtr);

    /// 1 custom-message id, 2 message. All needed. Never answered.
    Q_INVOKABLE void Vlx_sendCustomInfo_REQ(const QList<QVariant> &arguments, VarnelCefView *panelPtr);

    /// 1 strategy id, 2 extension. All needed.
    Q_INVOKABLE void Vlx_queryStrategyStatus_REQ(const QList<QVariant> &arguments, VarnelCefView *panelPtr);

    /// The second half of the initialisation. Not for hosts.
    Q_INVOKABLE void AsyncInit();

    // Invokable so that another thread can start a timer through a queued call.

    Q_INVOKABLE void AsyncStartEntrustTimer();   ///< Pushes the orders collected so far after 200 ms.
    Q_INVOKABLE void AsyncStartExecutionTimer(); ///< Pushes the executions collected so far after 200 ms.

signals:
    /// Part of the interface; nothing in the library emits it.
    void signalAssetDetailChanged(const QVariantMap &detailMap);

    /// A K-line answer: the id of its request and one map for each candle, never none. Emitted on the thread
    /// on which the bus delivered it.
    void signalKLineDataRcv(const QString &clientMsgID, const QList<QVariantMap> &dataList);

    /// An event that was taken in, on its way to the owning thread.
    void signalParseEventMsg(const QVariant &type, const QVariantMap &dataMap);

private slots:
    void slotTickDataUpdate(const QString &symbol, const QVariantMap &data);
    void slotEntrustTimeout();
    void slotExecutionTimeout();
    void slotParseEventMsg(const QVariant &type, const QVariantMap &dataMap);

private:
    /// The registered views at one moment. Never changed after it is published.
    struct ViewRegistry {
        QList<VarnelCefView *> views;
        QSet<VarnelCefView *> lookup; ///< the same without doubles

        bool contains(VarnelCefView *view) const { return lookup.contains(view); }
    };

    /// The members that make up one of the two batches.
    struct Batch {
        QHash<QString, QString> &cache;
        QStringList &order;
        std::mutex &mutex;
        QTimer *timer;
    };

    /// Fields of a message, in the order in which they are packed.
    using Fields = QVector<QPair<QString, QVariant>>;

    WebMsgCenter(const QString &name, QObject *parent);
    void init();
    void initSnbPermission();

    void removeSubscriber(const QString &symbol, VarnelCefView *view); // with m_subscribeMutex locked
    void removeAllSubscriptions(VarnelCefView *view);

    void watch(VarnelCefView *view);
    void forget(QObject *endedView);

    void publishRegistry();
    std::shared_ptr<const ViewRegistry> registry() const; // any thread
    void pushToAll(const QString &event, std::initializer_list<QString> texts) const;
    static void pushTo(const ViewRegistry &registered, const QString &event, std::initializer_list<QString> texts);

    void pushAsset(const QVariantMap &dataMap);
    Batch entrustBatch();
    Batch executionBatch();
    static void collect(const Batch &batch, const QString &id, const QString &record);
    void flush(const Batch &batch, const QString &event, const char *operation);

    void callStrategyPlatform(const QString &subEvent, const QString &replyEvent, const Fields &fields,
                              const QVariantList &arguments, VarnelCefView *view);
    void sendToStrategyPlatform(const QString &subEvent, const Fields &fields, const QVariantList &arguments,
                                VarnelCefView *view);
    void parseStrategyEvent(const QVariantMap &dataMap);
    void parseVlxStartResponse(const QVariantMap &dataMap);
    void parseVlxStopResponse(const QVariantMap &dataMap);
    void parseVlxQueryStatusResponse(const QVariantMap &dataMap);
    void parseVlxRcvCustomMsg(const QVariantMap &dataMap);
    void parseVlxRcvStrategyStatusUpdate(const QVariantMap &dataMap);
    void answerStrategyCall(const QVariantMap &dataMap, const QString &replyEvent, const Operation &operation);

    QMap<VarnelCefView *, QSet<QString>> m_subscribeMap; ///< guarded by m_subscribeMutex
    std::mutex m_subscribeMutex;
    QHash<QString, std::set<VarnelCefView *>> m_subscribers; ///< the same by symbol; guarded by m_subscribeMutex

    QList<VarnelCefView *> m_viewList;              ///< owning thread only; in order of registration, doubles possible
    std::shared_ptr<const ViewRegistry> m_registry; ///< what m_viewList is, for reading; guarded by m_registryMutex
    mutable std::mutex m_registryMutex;

    QThread m_workThread; ///< never started: part of the object's layout

    QSettings *m_settings = nullptr; ///< guarded by m_settingsMutex; a child of this object
    std::mutex m_settingsMutex;

    // Owning thread only. Parentless and never deleted: they outlive the event loop on purpose.
    QTimer *m_entrustTimer = nullptr;
    QTimer *m_executionTimer = nullptr;

    // Pending records by id, each as the JSON that the batch will carry, and the ids in order of first arrival.
    QHash<QString, QString> m_entrustCache; ///< guarded by m_entrustMutex
    QStringList m_entrustOrder;             ///< guarded by m_entrustMutex
    std::mutex m_entrustMutex;
    QHash<QString, QString> m_executionCache; ///< guarded by m_executionMutex
    QStringList m_executionOrder;             ///< guarded by m_executionMutex
    std::mutex m_executionMutex;

    QMap<QString, QList<VarnelCefView *>> m_strategySubMap; ///< guarded by m_strategyMutex
    std::mutex m_strategyMutex;
    std::unique_ptr<StrategyCalls> m_strategyCalls; ///< guarded by m_strategyMutex; never null

    QReadWriteLock m_permissionLock;
    QMap<QString, QStringList> m_permissionMap; ///< guarded by m_permissionLock
};
