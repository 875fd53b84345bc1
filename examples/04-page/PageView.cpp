#include "PageView.h"

#include "PageEvent.h"
#include "bridge/DataThread.h"
#include "bridge/TradeThread.h"
#include "msgcenter/WebMsgCenter.h"

#include <QFile>
#include <QVBoxLayout>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>

namespace {

QString resource(const QString &name)
{
    QFile file(name);
    file.open(QIODevice::ReadOnly);
    return QString::fromUtf8(file.readAll());
}

/// Runs before the scripts of every page.
QWebEngineScript callBridgeScript()
{
    QWebEngineScript script;
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    script.setWorldId(QWebEngineScript::MainWorld);
    script.setSourceCode(resource(":/qtwebchannel/qwebchannel.js") + resource(":/call-bridge.js"));
    return script;
}

} // namespace

PageView::PageView(const QUrl &url) : m_data(new DataThread(this)), m_trade(new TradeThread(this))
{
    WebMsgCenter::instance()->reg(this);
    // Queued: a host operation may spin the event loop, and Chromium handles nothing while one of its own calls waits.
    connect(&m_bridge, &PageBridge::methodInvoked, this, &PageView::call, Qt::QueuedConnection);

    m_channel.registerObject("bridge", &m_bridge);
    m_browser.page()->setWebChannel(&m_channel);
    m_browser.page()->scripts().insert(callBridgeScript());

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(&m_browser);
    m_browser.load(url);
}

PageView::~PageView()
{
    WebMsgCenter::instance()->unReg(this);
}

void PageView::call(const QString &method, const QVariantList &args)
{
    // A method that nobody handles gets no answer.
    if (method.startsWith("Data_"))
        m_data->onInvokeMethod(0, 0, method, args);
    else if (method.startsWith("Trade_"))
        m_trade->onInvokeMethod(0, 0, method, args);
    else if (method == "Sub_subscribe_REQ")
        WebMsgCenter::instance()->subscribe(this, args.value(0).toString(), args.value(1).toString().split(','));
    else if (method == "UnSub_subscribe_REQ")
        WebMsgCenter::instance()->unsubscribe(this, args.value(0).toString(), args.value(1).toString().split(','));
    else if (method == "UnSub_subscribeAll_REQ")
        WebMsgCenter::instance()->unsubscribeAll(this, args.value(0).toString());
}

void PageView::customEvent(QEvent *event)
{
    const QCefEvent &sent = static_cast<PageEvent *>(event)->event;
    emit m_bridge.eventSent(sent.eventName(), sent.arguments());
}
