#include "gateway/MessageCenterCalls.h"

#include "gateway/WantedQuotes.h"
#include "msgcenter/WebMsgCenter.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace sim {

namespace {

QVariantList arrayIn(const QVariant &argument)
{
    if (argument.userType() == QMetaType::QVariantList)
        return argument.toList();
    const QString text = argument.toString();
    if (text.startsWith(QLatin1Char('['))) {
        const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8());
        if (document.isArray())
            return document.array().toVariantList();
    }
    QVariantList parts;
    const QStringList symbols = text.split(QLatin1Char(','));
    parts.reserve(symbols.size());
    for (const QString &symbol : symbols)
        parts.append(symbol);
    return parts;
}

using Subscription = void (*)(VarnelCefView *view, const QString &uuid, const QVariant &argument);

const QPair<QLatin1String, Subscription> kSubscriptions[] = {
    {QLatin1String("Sub_subscribe_REQ"),
     [](VarnelCefView *view, const QString &uuid, const QVariant &argument) {
         const QStringList symbols = MessageCenterCalls::symbolsIn(argument);
         WebMsgCenter::instance()->subscribe(view, uuid, symbols);
         WantedQuotes::add(view, symbols);
     }},
    {QLatin1String("UnSub_subscribe_REQ"),
     [](VarnelCefView *view, const QString &uuid, const QVariant &argument) {
         const QStringList symbols = MessageCenterCalls::symbolsIn(argument);
         WebMsgCenter::instance()->unsubscribe(view, uuid, symbols);
         WantedQuotes::remove(view, symbols);
     }},
    {QLatin1String("UnSub_subscribeAll_REQ"),
     [](VarnelCefView *view, const QString &uuid, const QVariant &) {
         WebMsgCenter::instance()->unsubscribeAll(view, uuid);
         WantedQuotes::removeAll(view);
     }},
};

using StrategyCall = void (WebMsgCenter::*)(const QVariantList &arguments, VarnelCefView *view);

const QPair<QLatin1String, StrategyCall> kStrategyCalls[] = {
    {QLatin1String("Vlx_startStrategy_REQ"), &WebMsgCenter::Vlx_startStrategy_REQ},
    {QLatin1String("Vlx_stopStrategy_REQ"), &WebMsgCenter::Vlx_stopStrategy_REQ},
    {QLatin1String("Vlx_queryStrategyStatus_REQ"), &WebMsgCenter::Vlx_queryStrategyStatus_REQ},
    {QLatin1String("Vlx_sendCustomInfo_REQ"), &WebMsgCenter::Vlx_sendCustomInfo_REQ},
    {QLatin1String("Vlx_subStrategyMsg_REQ"), &WebMsgCenter::Vlx_subStrategyMsg_REQ},
};

} // namespace

QStringList MessageCenterCalls::symbolsIn(const QVariant &argument)
{
    QStringList symbols;
    const QVariantList array = arrayIn(argument);
    for (const QVariant &element : array) {
        const QString symbol = element.toString();
        if (!symbol.isEmpty())
            symbols.append(symbol);
    }
    return symbols;
}

bool MessageCenterCalls::call(VarnelCefView *view, const QString &method, const QVariantList &args)
{
    for (const auto &[name, subscription] : kSubscriptions) {
        if (method != name)
            continue;
        if (args.isEmpty())
            return false;
        subscription(view, args.first().toString(), args.value(1));
        return true;
    }
    for (const auto &[name, strategyCall] : kStrategyCalls) {
        if (method != name)
            continue;
        (WebMsgCenter::instance()->*strategyCall)(args, view);
        return true;
    }
    return false;
}

} // namespace sim
