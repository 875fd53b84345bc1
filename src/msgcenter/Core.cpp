#include "msgcenter/WebMsgCenter.h"

#include "common/Logging.h"
#include "common/WebConstants.h"
#include "msgcenter/StrategyCalls.h"
#include "msgcenter/TradingEvents.h"

#include "CBusinessDataBase.h"
#include "CommonQuotaHandler.h"

#include <QCoreApplication>
#include <QDebug>
#include <QSettings>
#include <QTimer>

#include <iterator>

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

/// The settings of the account. Qt writes the file in an event on the owner's thread. The mutex that guards every other
/// use must be held then too: a value that another thread saves meanwhile would not reach the disk.
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
    , m_strategyCalls(std::make_unique<StrategyCalls>())
{
    publishRegistry();
    init();
}

WebMsgCenter::~WebMsgCenter() = default;

void WebMsgCenter::init()
{
    // Without this the queued signal that carries candles from the bus thread would be dropped.
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
    watch(view);
    m_viewList.append(view);
    publishRegistry();
}

void WebMsgCenter::unReg(VarnelCefView *view)
{
    qCDebug(lcWebSdk) << "WebMsgCenter::unReg" << static_cast<const void *>(view);
    m_viewList.removeAll(view);
    publishRegistry();
}

void WebMsgCenter::watch(VarnelCefView *view)
{
    if (view)
        connect(view, &QObject::destroyed, this, &WebMsgCenter::forget, Qt::UniqueConnection);
}

void WebMsgCenter::forget(QObject *endedView)
{
    // Only the address is used. A static_cast would look at an object that is no VarnelCefView any more.
    auto *const view = reinterpret_cast<VarnelCefView *>(endedView);
    if (m_viewList.removeAll(view) > 0)
        publishRegistry();
    removeAllSubscriptions(view);

    const std::lock_guard<std::mutex> lock(m_strategyMutex);
    for (auto views = m_strategySubMap.begin(); views != m_strategySubMap.end();) {
        views->removeOne(view);
        views = views->isEmpty() ? m_strategySubMap.erase(views) : std::next(views);
    }
    m_strategyCalls->viewEnded(view);
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

// Qt refuses the empty key too, but with a warning. A message handler that reads a setting would wait for ever then,
// because the mutex is held.

QString WebMsgCenter::getSetting(const QString &key)
{
    if (key.isEmpty())
        return QString();
    const std::lock_guard<std::mutex> lock(m_settingsMutex);
    return m_settings->value(key).toString();
}

void WebMsgCenter::saveSetting(const QString &key, const QString &value)
{
    if (key.isEmpty())
        return;
    const std::lock_guard<std::mutex> lock(m_settingsMutex);
    m_settings->setValue(key, value);
}
