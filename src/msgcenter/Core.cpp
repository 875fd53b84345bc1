#include "msgcenter/WebMsgCenter.h"

#include "common/Logging.h"
#include "common/WebConstants.h"
#include "msgcenter/TradingEvents.h"

#include "CBusinessDataBase.h"
#include "CommonQuotaHandler.h"

#include <QCoreApplication>
#include <QDebug>
#include <QSettings>
#include <QTimer>

using namespace WebConstants;

namespace {

constexpr int refreshIntervalMs = 200;

QTimer *makeRefreshTimer()
{
    auto *timer = new QTimer;
    timer->setSingleShot(true);
    timer->setTimerType(Qt::PreciseTimer); // a coarse one would cut up to 10 ms off the window
    timer->setInterval(refreshIntervalMs);
    return timer;
}

/// The settings of the account. Qt writes them back on the owner's thread, in an event; the mutex that guards every
/// other use must be held then too, or a value saved meanwhile on another thread stays off the disk.
class GuardedSettings : public QSettings {
public:
    GuardedSettings(const QString &path, std::mutex &mutex, QObject *parent)
        : QSettings(path, QSettings::IniFormat, parent), m_mutex(mutex)
    {
    }

protected:
    bool event(QEvent *event) override
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return QSettings::event(event);
    }

private:
    std::mutex &m_mutex;
};

} // namespace

WebMsgCenter *WebMsgCenter::instance()
{
    static WebMsgCenter center(Center::presenterName, nullptr);
    return &center;
}

WebMsgCenter::WebMsgCenter(const QString &name, QObject *parent)
    : QvPresenterClass(name, parent, IMessageInterface::WebThreadType)
{
    publishRegistry();
    init();
}

WebMsgCenter::~WebMsgCenter() = default;

void WebMsgCenter::init()
{
    // Unregistered, the candles of an answer could not cross from the bus thread to a view's.
    qRegisterMetaType<QList<QVariantMap>>("QList<QVariantMap>");
    // The strategy platform returns the view under this type.
    qRegisterMetaType<VarnelCefView *>("VarnelCefView*");

    // Quotes and events come on threads of the host; both connections carry them over to the owning thread.
    connect(CommonQuotaHandler::instance(), &CommonQuotaHandler::sigTickDataUpdate, this,
            &WebMsgCenter::slotTickDataUpdate, Qt::AutoConnection);
    connect(this, &WebMsgCenter::signalParseEventMsg, this, &WebMsgCenter::slotParseEventMsg, Qt::AutoConnection);

    const QString path = QCoreApplication::applicationDirPath() + Center::settingsFolder +
                         CBusinessDataBase::GetInstance()->GetLoginAccount() + Center::settingsFile;
    m_settings = new GuardedSettings(path, m_settingsMutex, this);

    QMetaObject::invokeMethod(this, "AsyncInit", Qt::AutoConnection);
}

void WebMsgCenter::AsyncInit()
{
    m_entrustTimer = makeRefreshTimer();
    connect(m_entrustTimer, &QTimer::timeout, this, &WebMsgCenter::slotEntrustTimeout);
    m_executionTimer = makeRefreshTimer();
    connect(m_executionTimer, &QTimer::timeout, this, &WebMsgCenter::slotExecutionTimeout);

    for (const int id : tradingEvents)
        SubEvent(pluginPid(), QVariant(id), 1);
    SubEvent(pluginPid(), QVariant(strategyEventId()), 1);

    initSnbPermission();
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
    publishRegistry();
}

void WebMsgCenter::unReg(VarnelCefView *view)
{
    qCDebug(lcWebSdk) << "WebMsgCenter::unReg" << static_cast<const void *>(view);
    m_viewList.removeAll(view);
    publishRegistry();
}

void WebMsgCenter::publishRegistry()
{
    const auto published = std::make_shared<const ViewRegistry>(
        ViewRegistry{m_viewList, QSet<VarnelCefView *>(m_viewList.cbegin(), m_viewList.cend())});
    const std::lock_guard<std::mutex> lock(m_registryMutex);
    m_registry = published;
}

std::shared_ptr<const WebMsgCenter::ViewRegistry> WebMsgCenter::registry() const
{
    const std::lock_guard<std::mutex> lock(m_registryMutex);
    return m_registry;
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
