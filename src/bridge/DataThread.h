#pragma once

#include "common/Export.h"

#include <QMap>
#include <QObject>
#include <QThread>
#include <QVariantMap>

#include <atomic>

class VarnelCefView;

/// Receives the "Data_" calls of one web view and broadcasts each reply on that view.
/// The host makes one for each view, with the view as its Qt parent, and deletes it, or lets it go with the
/// view. A running QApplication is needed.
/// It lives on the thread that made it; only when made without a view does it move to a thread of its own.
/// It never owns the view and never answers a call that it does not know.
class VARNEL_WEBSDK_API DataThread : public QObject {
    Q_OBJECT
public:
    /// view becomes the Qt parent; null is possible, see setView. Makes the message center if there is none yet, and
    /// reads the display mode of record cells from the host. Call it on the user-interface thread.
    explicit DataThread(VarnelCefView *view);

    /// Waits up to 3 seconds for its thread; K-line requests under way are dropped without a reply. One made
    /// without a view must not be deleted while a handler of it runs for longer than that.
    ~DataThread() override;

    /// Runs the handler of that name, or queues it when called from another thread. True when there is one; false,
    /// without any reply, when there is none. Names are compared exactly. args: the page's arguments, its call
    /// identifier (uuid) first; with too few of them the page gets an empty text, and of the K-line call nothing. The
    /// handler may run for as long as the host's answer takes; args must live until this returns. The identifiers of
    /// browser and frame are not used.
    bool onInvokeMethod(int browserId, int frameId, const QString &method, const QVariantList &args);

    /// Replaces the view that replies go to; null means that no call is answered. Any thread: a dispatcher made
    /// without a view gets one no other way. A call that waits for the host meanwhile is answered on the new view. When
    /// the dispatcher runs on another thread, a reply may be on its way to the old view: keep that view until then.
    void setView(VarnelCefView *view);

private:
    // The handlers, found by name. Their order is fixed.
    Q_INVOKABLE void Data_getToken_REQ(const QVariantList &args);
    Q_INVOKABLE void Data_getSymbolDetail_REQ(const QVariantList &args);
    Q_INVOKABLE void Data_getCurrentTick_REQ(const QVariantList &args);
    Q_INVOKABLE void Data_getFundAccountList_REQ(const QVariantList &args);
    Q_INVOKABLE void Data_getTraderList_REQ(const QVariantList &args);
    Q_INVOKABLE void Data_getLoginTrader_REQ(const QVariantList &args);
    Q_INVOKABLE void Data_getSymbolList_REQ(const QVariantList &args);
    Q_INVOKABLE void Data_getSymbolListWithDetail_REQ(const QVariantList &args);
    Q_INVOKABLE void Data_getEntrustList_REQ(const QVariantList &args);
    Q_INVOKABLE void Data_getExecutionList_REQ(const QVariantList &args);
    Q_INVOKABLE void Data_getPositionList_REQ(const QVariantList &args);
    Q_INVOKABLE void Data_getAsset_REQ(const QVariantList &args);
    Q_INVOKABLE void Data_getTradableQty_REQ(const QVariantList &args);
    Q_INVOKABLE void Data_getSetting_REQ(const QVariantList &args);
    Q_INVOKABLE void Data_saveSetting_REQ(const QVariantList &args);
    Q_INVOKABLE void Data_getPermission_REQ(const QVariantList &args);
    Q_INVOKABLE void Data_openPermissionMenu_REQ(const QVariantList &args);
    Q_INVOKABLE void Data_getUpsDownsAnalysis_REQ(const QVariantList &args);
    Q_INVOKABLE void Data_getKLineData_REQ(const QVariantList &args);
    Q_INVOKABLE void Data_getOPStation_REQ(const QVariantList &args);

    template <typename... Readings, typename Query>
    void answer(const QString &replyEvent, const QVariantList &args, Query query);
    void receiveKLines(const QString &requestId, const QList<QVariantMap> &data);

    QThread m_thread; ///< runs an empty event loop when the object could not move there

    std::atomic<VarnelCefView *> m_view{nullptr}; ///< not owned; read again after each host call

    QMap<QString, QString> m_pendingKLines; ///< request identifier to the page's uuid; thread of the object only
};
