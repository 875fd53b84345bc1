#include "platform/StrategyPlatform.h"

#include "Orlo_Keys.h"
#include "Tessar_Fields.h"
#include "Varnel_Fields.h"
#include "platform/Logging.h"

#include <QJsonDocument>
#include <QJsonObject>

using namespace Varnel_Fields;
using Tessar_Fields::Strategy::strategyID;
using Tessar_Fields::Strategy::strategyStatus;
using Tessar_Fields::System::textDescription;

namespace sim {

namespace {

// Fields of a request that its answer returns unchanged.
const QString kView = QStringLiteral("panelPtr");
const QString kUuid = QStringLiteral("uuid");
const QString kExtension = QStringLiteral("ExtField");

// Fields of a start request.
const QString kPath = QStringLiteral("FilePath");
const QString kLanguage = QStringLiteral("Language");
const QString kFundAccounts = QStringLiteral("FundAccountList");

enum Language { Python = 1, CPlusPlus = 2, JavaScript = 3 };

const QString kStarting = QStringLiteral("Starting");
const QString kRunning = QStringLiteral("Running");
const QString kStopping = QStringLiteral("Stopping");
const QString kStopped = QStringLiteral("Stopped");

const QString kDone = QStringLiteral("0");
const QString kTime = QStringLiteral("time");

constexpr int kSecondsPerBeat = 60;

QString unknownStrategy(const QString &id)
{
    return QStringLiteral("策略不存在：%1").arg(id);
}

} // namespace

StrategyPlatform::StrategyPlatform(MessageBus &bus, const Scenario &scenario, const Faults &faults)
    : m_bus(bus)
    , m_faults(faults)
    , m_idPrefix(scenario.start.toString(QStringLiteral("'S'yyyyMMdd'-'")))
    , m_outEvent(bus.eventId(Orlo_Keys::EventMsgName::VELOX_TRANS_MSG_OUT))
    , m_stepEvent(bus.eventId(QStringLiteral("SimulatedStrategyStep")))
    , m_beatEvent(bus.eventId(QStringLiteral("SimulatedStrategyBeat")))
{
    for (const FundAccount &fund : scenario.fundAccounts)
        m_fundAccounts.insert(fund.account);
    bus.listen(bus.eventId(Orlo_Keys::EventMsgName::VELOX_TRANS_MSG_IN),
               [this](const QVariantMap &request) { receive(request); });
    bus.listen(m_stepEvent, [this](const QVariantMap &row) { finishTransition(row.value(strategyID).toString()); });
    bus.listen(m_beatEvent, [this](const QVariantMap &row) { beat(row.value(kTime).toString()); });
}

void StrategyPlatform::receive(const QVariantMap &request)
{
    using Handler = void (StrategyPlatform::*)(const QVariantMap &);
    static const QPair<QString, Handler> handlers[] = {
        {VeloxValues::MSEventStartStrategyReq, &StrategyPlatform::start},
        {VeloxValues::MSEventStopStrategyReq, &StrategyPlatform::stop},
        {VeloxValues::MSEventQueryStrategyStatusReq, &StrategyPlatform::queryStatus},
        {VeloxValues::MSEventStrategyCustomMsg, &StrategyPlatform::takeCustomMessage},
        {VeloxValues::MSEventSubStrategyMsg, &StrategyPlatform::takeSubscription},
    };
    if (m_faults.isOn(Fault::SilentStrategies))
        return;
    const QString type = request.value(VeloxFields::msgSubEventType).toString();
    for (const auto &[known, handle] : handlers) {
        if (known == type)
            return (this->*handle)(request);
    }
    qCWarning(terminalLog, "the strategy platform does not know the request \"%s\"", qUtf8Printable(type));
}

QString StrategyPlatform::reasonAgainst(const QVariantMap &startRequest) const
{
    if (startRequest.value(kPath).toString().isEmpty())
        return QStringLiteral("策略文件路径为空");
    const int language = startRequest.value(kLanguage).toInt();
    if (language != Python && language != CPlusPlus && language != JavaScript)
        return QStringLiteral("不支持的策略语言：%1").arg(language);
    const QStringList accounts = startRequest.value(kFundAccounts).toStringList();
    if (accounts.isEmpty())
        return QStringLiteral("没有资金账号");
    for (const QString &account : accounts) {
        if (!m_fundAccounts.contains(account))
            return QStringLiteral("资金账号不存在：%1").arg(account);
    }
    return {};
}

void StrategyPlatform::start(const QVariantMap &request)
{
    const QString objection = reasonAgainst(request);
    if (!objection.isEmpty())
        return answer(request, VeloxValues::MSEventStartStrategyRsp, {}, objection);
    const QString id = m_idPrefix + QStringLiteral("%1").arg(++m_lastNumber, 4, 10, QLatin1Char('0'));
    m_strategies[id].status = kStarting;
    qCInfo(terminalLog, "strategy %s starts: %s", qUtf8Printable(id),
           qUtf8Printable(request.value(kPath).toString().left(200)));
    answer(request, VeloxValues::MSEventStartStrategyRsp, id, kDone);
    setStatus(id, kStarting);
}

void StrategyPlatform::stop(const QVariantMap &request)
{
    const QString id = request.value(strategyID).toString();
    const QString status = m_strategies.value(id).status;
    const auto refuse = [&](const QString &reason) {
        answer(request, VeloxValues::MSEventStopStrategyRsp, id, reason);
    };
    if (status.isEmpty())
        return refuse(unknownStrategy(id));
    if (status == kStopping || status == kStopped)
        return refuse(QStringLiteral("策略已停止：%1").arg(id));
    m_strategies[id].status = kStopping;
    answer(request, VeloxValues::MSEventStopStrategyRsp, id, kDone);
    setStatus(id, kStopping);
}

void StrategyPlatform::queryStatus(const QVariantMap &request)
{
    const QString id = request.value(strategyID).toString();
    answer(request, VeloxValues::MSEventQueryStrategyStatusRsp, id,
           m_strategies.contains(id) ? kDone : unknownStrategy(id));
}

void StrategyPlatform::takeCustomMessage(const QVariantMap &request)
{
    const QString id = request.value(VeloxFields::strategyCustomMsgID).toString();
    const auto strategy = m_strategies.find(id);
    if (strategy == m_strategies.end() || strategy->status != kRunning) {
        qCInfo(terminalLog, "no strategy \"%s\" is running: the custom message is dropped",
               qUtf8Printable(id.left(100)));
        return;
    }
    sendCustomMessage(id, {{QStringLiteral("count"), ++strategy->messages},
                           {QStringLiteral("echo"), request.value(VeloxFields::strategyCustomMsg).toString()}});
}

void StrategyPlatform::takeSubscription(const QVariantMap &)
{
    // Nothing to do: strategies send their messages with or without subscribers.
}

void StrategyPlatform::answer(const QVariantMap &request, const QString &type, const QString &id,
                              const QString &description)
{
    announce({{strategyID, id},
              {strategyStatus, m_strategies.value(id).status},
              {textDescription, description},
              {kExtension, request.value(kExtension)},
              {kView, request.value(kView)},
              {kUuid, request.value(kUuid)}},
             type);
}

/// Announces the new status, and starts the next change where one follows.
void StrategyPlatform::setStatus(const QString &id, const QString &status)
{
    m_strategies[id].status = status;
    announce({{strategyID, id}, {strategyStatus, status}}, VeloxValues::MSEventStrategyStatusUpdate);
    if (status == kStarting || status == kStopping)
        m_bus.announce(m_stepEvent, {{strategyID, id}});
}

void StrategyPlatform::finishTransition(const QString &id)
{
    const QString status = m_strategies.value(id).status;
    if (status == kStarting)
        setStatus(id, kRunning);
    else if (status == kStopping)
        setStatus(id, kStopped);
}

void StrategyPlatform::onTime(const QDateTime &time)
{
    if (m_nextBeat.isValid() && time < m_nextBeat)
        return;
    if (m_nextBeat.isValid())
        m_bus.announce(m_beatEvent, {{kTime, time.toString(QStringLiteral("yyyyMMddHHmmss"))}});
    m_nextBeat = time.addSecs(kSecondsPerBeat);
}

void StrategyPlatform::beat(const QString &time)
{
    for (auto strategy = m_strategies.begin(); strategy != m_strategies.end(); ++strategy) {
        if (strategy->status == kRunning)
            sendCustomMessage(strategy.key(), {{QStringLiteral("heartbeat"), ++strategy->heartbeats}, {kTime, time}});
    }
}

/// Sends the content as JSON text, with the strategy's id added.
void StrategyPlatform::sendCustomMessage(const QString &id, const QVariantMap &content)
{
    QJsonObject message = QJsonObject::fromVariantMap(content);
    message.insert(strategyID, id);
    announce(
        {{VeloxFields::strategyCustomMsgID, id},
         {VeloxFields::strategyCustomMsg, QString::fromUtf8(QJsonDocument(message).toJson(QJsonDocument::Compact))}},
        VeloxValues::MSEventStrategyCustomMsg);
}

void StrategyPlatform::announce(QVariantMap row, const QString &type)
{
    if (m_faults.isOn(Fault::SilentStrategies))
        return;
    row.insert(VeloxFields::msgSubEventType, type);
    row.insert(Tessar_Fields::System::msgType, m_outEvent);
    m_lastDue = m_bus.announceLate(m_outEvent, row, m_faults.delay(Fault::SlowAnswers), m_lastDue);
}

} // namespace sim
