// Ten seconds of a busy market, played in real time: what share of the user-interface thread the library takes, and how
// long it stays there at most. Quotes and events come on threads of their own, as in a terminal; the host is the cheap
// one, so that the time is the library's. The figures go to standard output, and as JSON to the file that is named.

#include "BenchHost.h"
#include "CheapHost.h"

#include "msgcenter/WebMsgCenter.h"

#include "CPackMessageCommon.h"
#include "CommonQuotaHandler.h"
#include "Tessar_Fields.h"

#include <QApplication>
#include <QFile>
#include <QJsonDocument>
#include <QLoggingCategory>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <functional>
#include <thread>
#include <vector>

namespace {

using namespace std::chrono;

constexpr seconds playTime{10};
constexpr int viewCount = 50;
constexpr int symbolCount = 300;
constexpr int symbolsOfAView = 100;
constexpr int ticksPerSecond = 2000;
constexpr int updatesPerSecond = 500; // orders and executions together
constexpr int openOrders = 2000;
constexpr int orderEvent = 0x30003;
constexpr int executionEvent = 0x30004;

nanoseconds threadTime()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return seconds(time.tv_sec) + nanoseconds(time.tv_nsec);
}

/// Times what runs in the message center and its timers, which are the only ones here.
class TimingApplication : public QApplication {
public:
    using QApplication::QApplication;

    bool notify(QObject *receiver, QEvent *event) override
    {
        const bool isLibrary = receiver == center || qobject_cast<QTimer *>(receiver);
        if (!isLibrary)
            return QApplication::notify(receiver, event);
        const nanoseconds before = threadTime();
        const bool result = QApplication::notify(receiver, event);
        const nanoseconds stay = threadTime() - before;
        total += stay;
        longest = std::max(longest, stay);
        ++stays;
        return result;
    }

    const QObject *center = nullptr; ///< the message center, once it is made
    nanoseconds total{0};
    nanoseconds longest{0};
    int stays = 0;
};

QString symbolNumbered(int number)
{
    return QStringLiteral("%1.SH").arg(600000 + number % symbolCount);
}

/// Calls deliver with 0, 1, 2 … at an even rate, in bursts of ten milliseconds, until it is stopped.
class Feed {
public:
    Feed(int perSecond, const std::function<void(int)> &deliver)
        : m_thread([this, perSecond, deliver] {
            constexpr milliseconds burst{10};
            auto next = steady_clock::now();
            for (int number = 0; !m_isStopped;) {
                for (int i = 0; i < perSecond * burst.count() / 1000; ++i)
                    deliver(number++);
                next += burst;
                std::this_thread::sleep_until(next);
            }
        })
    {
    }

    ~Feed()
    {
        m_isStopped = true;
        m_thread.join();
    }

private:
    std::atomic<bool> m_isStopped{false};
    std::thread m_thread;
};

void deliverTick(int number)
{
    static const QVariantMap quote = CheapHost::quote();
    emit CommonQuotaHandler::instance()->sigTickDataUpdate(symbolNumbered(number * 7), quote);
}

/// Orders and executions in turn.
void deliverUpdate(int number)
{
    CPackMessageCommon pack;
    const bool isOrder = number % 2 == 0;
    pack.AddVaule(isOrder ? Tessar_Fields::Security::orderID : Tessar_Fields::Security::execID,
                  QStringLiteral("B%1").arg(number * 13 % openOrders));
    WebMsgCenter::instance()->ProcEventMsg(QString(), isOrder ? orderEvent : executionEvent, pack.GetPackedMsg(0));
}

} // namespace

int main(int argc, char **argv)
{
    TimingApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
    const auto terminal = makeTerminal();

    WebMsgCenter *const center = WebMsgCenter::instance();
    application.center = center;
    std::vector<std::unique_ptr<VarnelCefView>> views;
    for (int view = 0; view < viewCount; ++view) {
        QStringList symbols;
        for (int i = 0; i < symbolsOfAView; ++i)
            symbols.append(symbolNumbered(view * symbolCount / viewCount + i));
        views.push_back(std::make_unique<VarnelCefView>());
        center->reg(views.back().get());
        center->subscribe(views.back().get(), uuid, symbols);
    }

    const qint64 droppedBefore = CheapHost::droppedEvents();
    {
        const Feed quotes(ticksPerSecond, deliverTick);
        const Feed bus(updatesPerSecond, deliverUpdate);
        QTimer::singleShot(playTime, &application, &QCoreApplication::quit);
        application.exec();
    }
    const double share = duration<double>(application.total) / duration<double>(playTime);
    const double longest = duration<double, std::micro>(application.longest).count();
    const QVariantMap figures{
        {QStringLiteral("share of the thread in percent"), 100 * share},
        {QStringLiteral("longest stay in microseconds"), longest},
        {QStringLiteral("stays"), application.stays},
        {QStringLiteral("pushes"), CheapHost::droppedEvents() - droppedBefore},
    };
    for (auto it = figures.cbegin(); it != figures.cend(); ++it)
        std::printf("%-32s %s\n", qUtf8Printable(it.key()), qUtf8Printable(it.value().toString()));

    QFile file(QString::fromLocal8Bit(argc > 1 ? argv[1] : ""));
    if (argc > 1 &&
        (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument::fromVariant(figures).toJson()) < 0)) {
        std::fprintf(stderr, "cannot write %s\n", argv[1]);
        return 1;
    }
    return 0;
}
