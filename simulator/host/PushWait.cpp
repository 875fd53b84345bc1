#include "host/PushWait.h"

#include "terminal/Terminal.h"
#include "traffic/Log.h"

#include <QEventLoop>
#include <QTimer>

namespace sim {

namespace {

constexpr int kPatienceMs = 5000;

/// The event with which pages get orders.
const QString kOrderPush = QStringLiteral("on_entrustUpdate");

} // namespace

void awaitPushOf(const QString &orderId, Terminal &terminal)
{
    if (terminal.isRepeating())
        return;
    QEventLoop loop;
    const int listener = traffic::log().listen([&](const traffic::Entry &entry) {
        if (entry.kind == traffic::Entry::Event && entry.name == kOrderPush &&
            entry.args.value(0).toString().contains(orderId))
            QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    });
    QTimer::singleShot(kPatienceMs, &loop, &QEventLoop::quit);
    terminal.letTimeRun([&] { loop.exec(); });
    traffic::log().leave(listener);
}

} // namespace sim
