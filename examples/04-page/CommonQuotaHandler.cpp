// The quotes of a market in which every price rises by a cent each half second.
#include "CommonQuotaHandler.h"

#include "Tessar_Fields.h"

#include <QCoreApplication>
#include <QMutex>
#include <QThread>
#include <QTimer>

CommonQuotaHandler::CommonQuotaHandler(QObject *parent) : QObject(parent) {}

CommonQuotaHandler::~CommonQuotaHandler() = default;

namespace {

constexpr int openingCents = 1000;

class Market : public CommonQuotaHandler {
public:
    Market()
    {
        m_timer.setInterval(500);
        m_timer.moveToThread(&m_thread);
        connect(&m_thread, &QThread::started, &m_timer, QOverload<>::of(&QTimer::start));
        connect(&m_timer, &QTimer::timeout, &m_timer, [this] { tick(); }); // on m_thread
        connect(qApp, &QCoreApplication::aboutToQuit, this, [this] {
            m_thread.quit();
            m_thread.wait();
        });
        m_thread.start();
    }

    int SubscribeQuota(const QStringList &symbols, bool subscribe, int) override
    {
        const QMutexLocker lock(&m_mutex);
        for (const QString &symbol : symbols) {
            if (!subscribe)
                m_streamed.remove(symbol);
            else if (!m_streamed.contains(symbol)) // every page that subscribes asks again
                m_streamed.insert(symbol, openingCents);
        }
        return 0;
    }

    QMap<QString, QVariant> GetQuotaSnapshot(const QString &symbol, int) override
    {
        const QMutexLocker lock(&m_mutex);
        return quote(symbol, m_streamed.value(symbol, openingCents));
    }

    int GetQtyUnit(const QString &) override { return 1; }

private:
    static QVariantMap quote(const QString &symbol, int cents)
    {
        return {{Tessar_Fields::Security::symbol, symbol}, {"last", cents / 100.0}};
    }

    void tick()
    {
        QMap<QString, int> prices;
        {
            const QMutexLocker lock(&m_mutex);
            for (int &cents : m_streamed)
                ++cents;
            prices = m_streamed;
        }
        for (auto price = prices.cbegin(); price != prices.cend(); ++price)
            emit sigTickDataUpdate(price.key(), quote(price.key(), price.value()));
    }

    QThread m_thread;
    QTimer m_timer; // lives on m_thread
    QMutex m_mutex;
    QMap<QString, int> m_streamed; // symbol to price in cents; guarded by m_mutex
};

} // namespace

CommonQuotaHandler *CommonQuotaHandler::instance()
{
    static auto *const market = new Market; // never deleted: it must be valid until the process ends
    return market;
}
