#include "FuzzHost.h"

#include "msgcenter/WebMsgCenter.h"

#include <QApplication>

#include <utility>

namespace {

Decisions *currentDecisions = nullptr;
QVector<FuzzHost::Event> events;
QVector<QVariant> platformEvents;
QVector<QVariant> candleRequests;

void ignoreLog(QtMsgType, const QMessageLogContext &, const QString &) {}

void start()
{
    static int argc = 1;
    static char name[] = "fuzz";
    static char *argv[] = {name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(ignoreLog); // the lines are made all the same
    new QApplication(argc, argv);      // never deleted: the fuzzer ends the process by itself
    WebMsgCenter::instance();
}

} // namespace

void FuzzHost::begin(Decisions &decisions)
{
    currentDecisions = &decisions;
    static const bool started = (start(), true);
    Q_UNUSED(started)
}

Decisions &FuzzHost::decisions()
{
    return *currentDecisions;
}

QVector<FuzzHost::Event> FuzzHost::takeEvents()
{
    return std::exchange(events, {});
}

QVector<QVariant> FuzzHost::takePlatformEvents()
{
    return std::exchange(platformEvents, {});
}

QVector<QVariant> FuzzHost::takeCandleRequests()
{
    return std::exchange(candleRequests, {});
}

void FuzzHost::received(const Event &event)
{
    events.append(event);
}

void FuzzHost::sentToPlatform(const QVariant &body)
{
    platformEvents.append(body);
}

void FuzzHost::askedForCandles(const QVariant &body)
{
    candleRequests.append(body);
}

QVariant FuzzHost::packed(const QVariantMap &row)
{
    QVariantList fields; // as the starter's packer has it
    for (auto field = row.cbegin(); field != row.cend(); ++field)
        fields.append(QVariant(QVariantList{field.key(), field.value()}));
    return fields;
}
