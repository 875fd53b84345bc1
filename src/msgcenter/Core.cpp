#include "msgcenter/WebMsgCenter.h"

#include "common/Logging.h"
#include "common/WebConstants.h"

#include "CBusinessDataBase.h"
#include "Orlo_Keys.h"
#include "VarnelBusinessDataInterface.h"

#include <QCoreApplication>
#include <QDebug>
#include <QSettings>
#include <QTimer>

using namespace WebConstants;

namespace {

constexpr int refreshIntervalMs = 200;

/// The host's trading events, in the order in which the message center subscribes to them.
constexpr int tradingEventIds[] = {
    0x300A0, // account assets
    0x30003, // order
    0x30005, // order
    0x30004, // execution
    0x30006, // execution
    0x31002, // position
    0x30001, // orders loaded
};

QTimer *makeRefreshTimer()
{
    auto *timer = new QTimer;
    timer->setSingleShot(true);
    timer->setTimerType(Qt::PreciseTimer); // a coarse one would cut up to 10 ms off the window
    timer->setInterval(refreshIntervalMs);
    return timer;
}

} // namespace

WebMsgCenter *WebMsgCenter::instance()
{
    static WebMsgCenter center(Center::presenterName, nullptr);
    return &center;
}

WebMsgCenter::WebMsgCenter(const QString &name, QObject *parent)
    : QvPresenterClass(name, parent, IMessageInterface::WebThreadType)
{
    init();
}

WebMsgCenter::~WebMsgCenter() = default;

void WebMsgCenter::init()
{
    // Unregistered, the candles of an answer could not cross from the bus thread to a view's.
    qRegisterMetaType<QList<QVariantMap>>("QList<QVariantMap>");

    const QString path = QCoreApplication::applicationDirPath() + Center::settingsFolder +
                         CBusinessDataBase::GetInstance()->GetLoginAccount() + Center::settingsFile;
    m_settings = new QSettings(path, QSettings::IniFormat, this);

    QMetaObject::invokeMethod(this, "AsyncInit", Qt::AutoConnection);
}

void WebMsgCenter::AsyncInit()
{
    m_entrustTimer = makeRefreshTimer();
    m_executionTimer = makeRefreshTimer();

    for (const int id : tradingEventIds)
        SubEvent(pluginPid(), QVariant(id), 1);
    const int strategyEventId =
        VarnelBusinessDataInterface::GetOrloEventMsgIdByStr(Orlo_Keys::EventMsgName::VELOX_TRANS_MSG_OUT);
    SubEvent(pluginPid(), QVariant(strategyEventId), 1);
}

void WebMsgCenter::AsyncStartEntrustTimer()
{
    m_entrustTimer->start();
}

void WebMsgCenter::AsyncStartExecutionTimer()
{
    m_executionTimer->start();
}

void WebMsgCenter::reg(VarnelCefView *view)
{
    m_viewList.append(view);
}

void WebMsgCenter::unReg(VarnelCefView *view)
{
    qCDebug(lcWebSdk) << "WebMsgCenter::unReg" << static_cast<const void *>(view);
    m_viewList.removeAll(view);
}

QString WebMsgCenter::getSetting(const QString &key)
{
    const std::lock_guard<std::mutex> lock(m_settingsMutex);
    return m_settings->value(key).toString();
}

void WebMsgCenter::saveSetting(const QString &key, const QString &value)
{
    const std::lock_guard<std::mutex> lock(m_settingsMutex);
    m_settings->setValue(key, value);
}
