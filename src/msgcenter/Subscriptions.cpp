#include "msgcenter/WebMsgCenter.h"

#include "common/Reply.h"
#include "dataservice/DataProcess.h"

#include "CommonQuotaHandler.h"

#include <QDebug>
#include <QPointer>

#include <algorithm>

using namespace WebConstants;

void WebMsgCenter::subscribe(VarnelCefView *view, const QString &uuid, const QStringList &symbols)
{
    if (!view) {
        qCDebug(lcWebSdk) << "WebMsgCenter::subscribe"
                          << "nullptr";
        return;
    }
    const QPointer<VarnelCefView> alive(view); // the host may spin the event loop, and the user close the page
    // Asked for symbols that stream already, too: the host decides what that means.
    CommonQuotaHandler::instance()->SubscribeQuota(symbols, true, 0);
    if (!alive)
        return;
    watch(view);
    {
        const std::lock_guard<std::mutex> lock(m_subscribeMutex);
        QSet<QString> &wanted = m_subscribeMap[view];
        for (const QString &symbol : symbols) {
            wanted.insert(symbol);
            m_subscribers[symbol].insert(view);
        }
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
    // Meant: the host is not told. Quotes keep streaming and are only filtered here.
    watch(view);
    {
        const std::lock_guard<std::mutex> lock(m_subscribeMutex);
        QSet<QString> &wanted = m_subscribeMap[view];
        for (const QString &symbol : symbols) {
            wanted.remove(symbol);
            removeSubscriber(symbol, view);
        }
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
    removeAllSubscriptions(view);
    qCDebug(lcWebSdk) << "WebMsgCenter::unsubscribeAll";
    Reply::send(view, ReplyEvent::UnSub_subscribeAll, Reply::textWithoutResult(uuid));
}

void WebMsgCenter::unsubscribeAll(VarnelCefView *view)
{
    qCDebug(lcWebSdk) << "WebMsgCenter::unsubscribeAll" << static_cast<const void *>(view);
    removeAllSubscriptions(view);
}

void WebMsgCenter::removeAllSubscriptions(VarnelCefView *view)
{
    const std::lock_guard<std::mutex> lock(m_subscribeMutex);
    const QSet<QString> symbols = m_subscribeMap.take(view);
    for (const QString &symbol : symbols)
        removeSubscriber(symbol, view);
}

void WebMsgCenter::removeSubscriber(const QString &symbol, VarnelCefView *view)
{
    const auto subscribers = m_subscribers.find(symbol);
    if (subscribers == m_subscribers.end())
        return;
    subscribers->erase(view);
    if (subscribers->empty())
        m_subscribers.erase(subscribers);
}

void WebMsgCenter::slotTickDataUpdate(const QString &symbol, const QVariantMap &data)
{
    const auto anyoneWantsIt = [&] {
        const std::shared_ptr<const ViewRegistry> registered = registry();
        const std::lock_guard<std::mutex> lock(m_subscribeMutex);
        const auto subscribers = m_subscribers.constFind(symbol);
        return subscribers != m_subscribers.cend() &&
               std::any_of(subscribers->begin(), subscribers->end(),
                           [&](VarnelCefView *view) { return registered->contains(view); });
    };
    if (!anyoneWantsIt())
        return; // as most ticks: no text is made
    // The lock is not held while the text is made: a log handler or the conversion of a host's type may run then and
    // change what is registered.
    const QCefEvent tick =
        Reply::event(Push::tickUpdate, {DataProcess::instance()->processTick(QString(), symbol, data, true)});

    const std::shared_ptr<const ViewRegistry> registered = registry();
    const std::lock_guard<std::mutex> lock(m_subscribeMutex);
    const auto subscribers = m_subscribers.constFind(symbol);
    if (subscribers == m_subscribers.cend())
        return;
    for (VarnelCefView *const view : *subscribers) {
        if (registered->contains(view))
            view->broadcastEvent(tick);
    }
}

void WebMsgCenter::pushToAll(const QString &event, std::initializer_list<QString> texts) const
{
    const std::shared_ptr<const ViewRegistry> registered = registry(); // held: a view may be entered meanwhile
    pushTo(*registered, event, texts);
}

void WebMsgCenter::pushTo(const ViewRegistry &registered, const QString &event, std::initializer_list<QString> texts)
{
    const QCefEvent push = Reply::event(event, texts);
    for (VarnelCefView *const view : registered.views)
        view->broadcastEvent(push);
}
