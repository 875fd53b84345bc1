#include "msgcenter/WebMsgCenter.h"

#include "common/Reply.h"
#include "dataservice/DataProcess.h"

#include "CommonQuotaHandler.h"

#include <QDebug>

using namespace WebConstants;

void WebMsgCenter::subscribe(VarnelCefView *view, const QString &uuid, const QStringList &symbols)
{
    if (!view) {
        qCDebug(lcWebSdk) << "WebMsgCenter::subscribe"
                          << "nullptr";
        return;
    }
    // Also for what is streamed already: the host decides what that means.
    CommonQuotaHandler::instance()->SubscribeQuota(symbols, true, 0);
    {
        const std::lock_guard<std::mutex> lock(m_subscribeMutex);
        QSet<QString> &wanted = m_subscribeMap[view];
        for (const QString &symbol : symbols)
            wanted.insert(symbol);
    }
    qCDebug(lcWebSdk) << "WebMsgCenter::subscribe"
                      << "quota truck" << symbols;
    Reply::send(view, ReplyEvent::Sub_subscribe, Reply::textWithoutResult(uuid));
}

void WebMsgCenter::unsubscribe(VarnelCefView *view, const QString &uuid, const QStringList &symbols)
{
    if (!view) {
        qCDebug(lcWebSdk) << "WebMsgCenter::unsubscribe"
                          << "nullptr";
        return;
    }
    // The host is not told, which is meant: quotes keep streaming and are only filtered here.
    {
        const std::lock_guard<std::mutex> lock(m_subscribeMutex);
        QSet<QString> &wanted = m_subscribeMap[view];
        for (const QString &symbol : symbols)
            wanted.remove(symbol);
    }
    qCDebug(lcWebSdk) << "WebMsgCenter::unsubscribe";
    Reply::send(view, ReplyEvent::UnSub_subscribe, Reply::textWithoutResult(uuid));
}

void WebMsgCenter::unsubscribeAll(VarnelCefView *view, const QString &uuid)
{
    if (!view) {
        qCDebug(lcWebSdk) << "WebMsgCenter::unsubscribeAll"
                          << "nullptr";
        return;
    }
    {
        const std::lock_guard<std::mutex> lock(m_subscribeMutex);
        m_subscribeMap.remove(view);
    }
    qCDebug(lcWebSdk) << "WebMsgCenter::unsubscribeAll";
    Reply::send(view, ReplyEvent::UnSub_subscribeAll, Reply::textWithoutResult(uuid));
}

void WebMsgCenter::unsubscribeAll(VarnelCefView *view)
{
    qCDebug(lcWebSdk) << "WebMsgCenter::unsubscribeAll" << static_cast<const void *>(view);
    const std::lock_guard<std::mutex> lock(m_subscribeMutex);
    m_subscribeMap.remove(view);
}

void WebMsgCenter::slotTickDataUpdate(const QString &symbol, const QVariantMap &data)
{
    const std::shared_ptr<const ViewRegistry> registered = registry();
    const auto isWantedBy = [&](const SubscribeMap::const_iterator &subscriber) {
        return registered->contains(subscriber.key()) && subscriber.value().contains(symbol);
    };
    const auto anyoneWantsIt = [&] {
        const std::lock_guard<std::mutex> lock(m_subscribeMutex);
        for (auto it = m_subscribeMap.cbegin(); it != m_subscribeMap.cend(); ++it) {
            if (isWantedBy(it))
                return true;
        }
        return false;
    };
    // Most ticks are for nobody: they cost no text. It is made without the lock, because a log handler may run then.
    if (registered->views.isEmpty() || !anyoneWantsIt())
        return;
    const QCefEvent tick =
        Reply::event(Push::tickUpdate, {DataProcess::instance()->processTick(QString(), symbol, data, true)});

    const std::lock_guard<std::mutex> lock(m_subscribeMutex);
    for (auto it = m_subscribeMap.cbegin(); it != m_subscribeMap.cend(); ++it) {
        if (isWantedBy(it))
            it.key()->broadcastEvent(tick);
    }
}

void WebMsgCenter::pushToAll(const QString &event, const QStringList &texts) const
{
    const QCefEvent push = Reply::event(event, texts);
    const std::shared_ptr<const ViewRegistry> registered = registry(); // held: a view may be entered meanwhile
    for (VarnelCefView *const view : registered->views)
        view->broadcastEvent(push);
}
