// Ten million ticks and a million orders through the library: the process must need no more memory at the end than
// after the first tenth. Each order is placed by a page, has one execution, and has an identifier of its own. Prints
// what the process has resident after each tenth; status 1 when it has grown.

#include "BenchHost.h"
#include "CheapHost.h"

#include "bridge/TradeThread.h"
#include "msgcenter/WebMsgCenter.h"

#include "CPackMessageCommon.h"
#include "CommonQuotaHandler.h"
#include "OrderRequestList.h"
#include "Tessar_Fields.h"
#include "VarnelTradeLogic.h"

#include <QApplication>
#include <QFile>
#include <QLoggingCategory>

#include <cstdio>
#include <cstdlib>
#include <vector>

// In the place of the simulator's, whose books would remember every order.

int VarnelTradeLogic::orders(const OrderRequestList &, QVariant &, int, QList<VarnelLogic::ResponseInfo> &, bool)
{
    return 0;
}

QList<QMap<QString, QVariant>> VarnelTradeLogic::transOrderRsp(const OrderRequestList &, const QVariant &)
{
    static int number = 0;
    QVariantMap response = CheapHost::order(++number);
    response.insert(Tessar_Fields::System::requestExeStatus, QStringLiteral("0"));
    return {response};
}

namespace {

constexpr int viewCount = 10;
constexpr int ordersOfALife = 1000; ///< until one page ends and another begins
constexpr int ordersOfABatch = 100;
constexpr int orderEvent = 0x30003;
constexpr int executionEvent = 0x30004;
constexpr int tenths = 10;
constexpr double mostMiB = 4; ///< that the memory may grow: what an allocator keeps at one moment and not at another

double residentMiB()
{
    QFile file(QStringLiteral("/proc/self/status"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    constexpr double kibibytesOfAMebibyte = 1024;
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(line.indexOf(':') + 1).trimmed().split(' ').first().toDouble() / kibibytesOfAMebibyte;
    }
    return 0;
}

/// A page with its subscriptions; the dispatcher goes with the view.
struct APage {
    APage()
    {
        WebMsgCenter::instance()->reg(&view);
        WebMsgCenter::instance()->subscribe(&view, uuid, {QStringLiteral("609801.SH"), QStringLiteral("609802.SH")});
    }

    void placeOrder(int number)
    {
        trade->onInvokeMethod(0, 0, QStringLiteral("Trade_insertOrder_REQ"),
                              {QStringLiteral("u%1").arg(number), QStringLiteral("fund"), QStringLiteral("609801.SH"),
                               QStringLiteral("SH"), QStringLiteral("Buy"), QStringLiteral("Limit"),
                               QStringLiteral("10.00"), QStringLiteral("100"), QStringLiteral("tag")});
    }

    VarnelCefView view;
    TradeThread *trade = new TradeThread(&view);
};

void deliver(int event, const QString &field, int number)
{
    CPackMessageCommon pack;
    pack.AddVaule(field, QStringLiteral("B%1").arg(number));
    WebMsgCenter::instance()->ProcEventMsg(QString(), event, pack.GetPackedMsg(0));
}

void flush()
{
    QMetaObject::invokeMethod(WebMsgCenter::instance(), "slotEntrustTimeout");
    QMetaObject::invokeMethod(WebMsgCenter::instance(), "slotExecutionTimeout");
    QCoreApplication::processEvents();
}

qint64 numberFrom(int argc, char **argv, int index, qint64 otherwise)
{
    return argc > index ? std::atoll(argv[index]) : otherwise;
}

} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
    const qint64 ticks = numberFrom(argc, argv, 1, 10'000'000);
    const qint64 orders = numberFrom(argc, argv, 2, 1'000'000);
    const auto terminal = makeTerminal();
    std::vector<std::unique_ptr<APage>> pages;
    pages.reserve(viewCount);
    for (int i = 0; i < viewCount; ++i)
        pages.push_back(std::make_unique<APage>());

    const QVariantMap quote = CheapHost::quote();
    const qint64 eventsBefore = CheapHost::droppedEvents();
    std::vector<double> resident;
    int order = 0;
    for (int tenth = 1; tenth <= tenths; ++tenth) {
        for (const qint64 end = orders * tenth / tenths; order < end; ++order) {
            for (qint64 i = ticks / orders; i > 0; --i)
                emit CommonQuotaHandler::instance()->sigTickDataUpdate(QStringLiteral("609801.SH"), quote);
            pages[size_t(order) % pages.size()]->placeOrder(order);
            deliver(orderEvent, Tessar_Fields::Security::orderID, order);
            deliver(executionEvent, Tessar_Fields::Security::execID, order);
            if (order % ordersOfABatch == 0)
                flush();
            if (order % ordersOfALife == 0)
                pages[size_t(order / ordersOfALife) % pages.size()] = std::make_unique<APage>();
        }
        flush();
        resident.push_back(residentMiB());
        std::printf("%2d of %d: %8lld ticks, %7d orders, %6.1f MiB\n", tenth, tenths,
                    static_cast<long long>(ticks * tenth / tenths), order, resident.back());
        std::fflush(stdout);
    }
    std::printf("texts that views got: %lld\n", static_cast<long long>(CheapHost::droppedEvents() - eventsBefore));
    const double grown = resident.back() - resident.front();
    std::printf("grown since the first tenth: %.1f MiB, at most %.1f\n", grown, mostMiB);
    return grown > mostMiB ? 1 : 0;
}
