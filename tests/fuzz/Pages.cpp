#include "Pages.h"

#include "bridge/DataThread.h"
#include "bridge/TradeThread.h"
#include "msgcenter/WebMsgCenter.h"

#include "VarnelCefView.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMetaMethod>

#include <cstdio>
#include <cstdlib>

namespace {

/// A text as Qt's JSON reader gives it back: it drops a byte order mark at the beginning.
QString throughJson(const QString &text)
{
    const QJsonObject object{{QStringLiteral("uuid"), text}};
    return QJsonDocument::fromJson(QJsonDocument(object).toJson()).object().value(QStringLiteral("uuid")).toString();
}

QString replyOf(const QString &method)
{
    return method.left(method.size() - 3) + QStringLiteral("RES");
}

/// These are answered when the bus brings the answer. The last two never are.
bool isAnsweredLater(const QString &method)
{
    return method == QStringLiteral("Data_getKLineData_REQ") || method.startsWith(QStringLiteral("Vlx_"));
}

void requireReply(const QString &text, const QString &uuid)
{
    if (text.isEmpty())
        return; // too few arguments, or a call that has no envelope
    requireJson(text);
    QJsonParseError error;
    const QJsonObject envelope = QJsonDocument::fromJson(text.toUtf8(), &error).object();
    if (error.error == QJsonParseError::NoError)
        require(envelope.value(QStringLiteral("uuid")).toString() == throughJson(uuid),
                "the reply has the call's uuid");
}

} // namespace

void require(bool condition, const char *expectation)
{
    if (condition)
        return;
    std::fprintf(stderr, "does not hold: %s\n", expectation);
    std::abort();
}

void requireJson(const QString &text)
{
    QJsonParseError error;
    QJsonDocument::fromJson(text.toUtf8(), &error);
    require(error.error == QJsonParseError::NoError || error.error == QJsonParseError::DeepNesting, "the text is JSON");
}

const QStringList &callNames()
{
    static const QStringList names = [] {
        QStringList all{QStringLiteral("Sub_subscribe_REQ"), QStringLiteral("UnSub_subscribe_REQ"),
                        QStringLiteral("UnSub_subscribeAll_REQ")};
        for (const QMetaObject *meta :
             {&DataThread::staticMetaObject, &TradeThread::staticMetaObject, &WebMsgCenter::staticMetaObject}) {
            for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
                const QString name = QString::fromLatin1(meta->method(i).name());
                if (name.endsWith(QStringLiteral("_REQ")))
                    all.append(name);
            }
        }
        return all;
    }();
    return names;
}

Page::Page() : m_view(std::make_unique<VarnelCefView>())
{
    setRegistered(true);
}

Page::~Page() = default;

DataThread *Page::data()
{
    if (!m_data)
        m_data = new DataThread(m_view.get());
    return m_data;
}

TradeThread *Page::trade()
{
    if (!m_trade)
        m_trade = new TradeThread(m_view.get());
    return m_trade;
}

void Page::setRegistered(bool registered)
{
    WebMsgCenter *const center = WebMsgCenter::instance();
    if (registered)
        center->reg(m_view.get());
    else
        center->unReg(m_view.get());
}

void Page::call(const QString &method, const QVariantList &args)
{
    WebMsgCenter *const center = WebMsgCenter::instance();
    const QString uuid = args.value(0).toString();
    const QStringList symbols = args.value(1).toString().split(QLatin1Char(','));
    bool isKnown = callNames().contains(method);
    if (method.startsWith(QStringLiteral("Trade_")))
        isKnown = trade()->onInvokeMethod(1, 2, method, args);
    else if (method.startsWith(QStringLiteral("Vlx_")))
        QMetaObject::invokeMethod(center, method.toLatin1().constData(), Q_ARG(QVariantList, args),
                                  Q_ARG(VarnelCefView *, m_view.get()));
    else if (method == QStringLiteral("Sub_subscribe_REQ"))
        center->subscribe(m_view.get(), uuid, symbols);
    else if (method == QStringLiteral("UnSub_subscribe_REQ"))
        center->unsubscribe(m_view.get(), uuid, symbols);
    else if (method == QStringLiteral("UnSub_subscribeAll_REQ"))
        center->unsubscribeAll(m_view.get(), uuid);
    else
        isKnown = data()->onInvokeMethod(1, 2, method, args);

    const QVector<FuzzHost::Event> events = FuzzHost::takeEvents();
    if (!isKnown || isAnsweredLater(method)) {
        require(events.isEmpty(), "a call that is unknown, or answered later, has no reply yet");
        ++m_waiting[replyOf(method)];
        return;
    }
    require(events.size() == 1, "a call has exactly one reply");
    const FuzzHost::Event &reply = events.first();
    require(reply.view == m_view.get(), "the reply goes to the page that called");
    require(reply.name == replyOf(method).trimmed(), "the reply has the name of its call");
    require(reply.arguments.size() == 1, "a reply is one text");
    requireReply(reply.arguments.first().toString(), uuid);
}

void Page::receive(const FuzzHost::Event &event)
{
    for (const QVariant &argument : event.arguments)
        require(argument.userType() == QMetaType::QString, "events carry texts");
    if (!event.name.startsWith(QStringLiteral("on_"))) {
        require(m_waiting[event.name]-- > 0, "no call is answered twice");
        requireJson(event.arguments.value(0).toString());
        return;
    }
    if (event.name.startsWith(QStringLiteral("on_vlx")))
        return require(event.arguments.size() == 2, "a push of the strategy platform has two plain texts");
    const QString text = event.arguments.value(0).toString();
    if (!text.isEmpty()) // as that of loaded orders, and of the assets of an unknown account
        requireJson(text);
}

Page &Pages::at(int number)
{
    std::unique_ptr<Page> &page = m_pages[number % most];
    if (!page)
        page = std::make_unique<Page>();
    return *page;
}

void Pages::close(int number)
{
    receiveAll();
    m_pages[number % most].reset();
}

void Pages::receiveAll()
{
    const QVector<FuzzHost::Event> events = FuzzHost::takeEvents();
    for (const FuzzHost::Event &event : events) {
        Page *receiver = nullptr;
        for (const std::unique_ptr<Page> &page : m_pages) {
            if (page && page->view() == event.view)
                receiver = page.get();
        }
        require(receiver, "an event goes to an open page");
        if (m_answers == Unasked && !event.name.startsWith(QStringLiteral("on_")))
            requireJson(event.arguments.value(0).toString());
        else
            receiver->receive(event);
    }
}

Pages::~Pages()
{
    QCoreApplication::processEvents();
    receiveAll();
    for (std::unique_ptr<Page> &page : m_pages)
        page.reset();
    QCoreApplication::processEvents();
    require(FuzzHost::takeEvents().isEmpty(), "no event comes when all pages are closed");
}
