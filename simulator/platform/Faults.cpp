#include "platform/Faults.h"

#include "platform/FrozenTime.h"

namespace sim {

namespace {

constexpr int kMostTimes = 1000000;
constexpr int kMostMilliseconds = 600000;

} // namespace

const std::array<FaultInfo, Faults::kCount> &Faults::all()
{
    static const std::array<FaultInfo, kCount> table{{
        {Fault::SlowAnswers, "slow-answers", FaultKind::Milliseconds, kMostMilliseconds,
         "The terminal's servers answer so many milliseconds later. An order or a cancel holds all pages meanwhile."},
        {Fault::SilentKLines, "silent-klines", FaultKind::Switch, 1, "No request for candles is answered."},
        {Fault::RefuseOrders, "refuse-orders", FaultKind::Count, kMostTimes,
         "The next N orders are rejected, with a reason."},
        {Fault::RefuseOrdersSilently, "refuse-orders-silently", FaultKind::Count, kMostTimes,
         "The next N calls that place orders are refused without a reason: the reply looks like a success, and has no "
         "order."},
        {Fault::LateCancels, "late-cancels", FaultKind::Count, kMostTimes,
         "The next N cancels come too late: the exchange fills the orders whole, at their limits, just before."},
        {Fault::FillInParts, "fill-in-parts", FaultKind::Count, kMostTimes,
         "The next N orders that would fill whole at once fill in parts: half first, and the rest at a later change of "
         "the quotes."},
        {Fault::AnswerAfterPush, "answer-after-push", FaultKind::Count, kMostTimes,
         "The next N calls that place orders are answered after the push of their orders."},
        {Fault::LatePushes, "late-pushes", FaultKind::Milliseconds, kMostMilliseconds,
         "All pushes of orders, executions, positions and assets come so many milliseconds later, so that answers come "
         "before them."},
        {Fault::FailPermissions, "fail-permissions", FaultKind::Switch, 1,
         "The server of the permissions fails: no account has one. Switch it on at the start, because permissions are "
         "fetched once."},
        {Fault::SilentStrategies, "silent-strategies", FaultKind::Switch, 1,
         "The strategy platform neither answers nor sends messages."},
        {Fault::DropInCall, "drop-in-call", FaultKind::Count, kMostTimes,
         "At the next N calls the connection of the page breaks: the call is made, and its reply never comes."},
    }};
    return table;
}

const FaultInfo *Faults::find(const QString &name)
{
    for (const FaultInfo &info : all()) {
        if (name == QLatin1String(info.name))
            return &info;
    }
    return nullptr;
}

QString Faults::valuesOf(const FaultInfo &info)
{
    if (info.kind == FaultKind::Switch)
        return QStringLiteral("1, or 0 to switch it off");
    return QStringLiteral("a whole number from 0 to %1").arg(info.most);
}

QString Faults::parse(const QString &text, FaultSetting &setting)
{
    const int equals = text.indexOf(QLatin1Char('='));
    const QString name = text.left(equals);
    const FaultInfo *const info = find(name);
    if (!info) {
        QStringList names;
        for (const FaultInfo &each : all())
            names.append(QLatin1String(each.name));
        return QStringLiteral("\"%1\" is not a fault: there are %2").arg(name, names.join(QStringLiteral(", ")));
    }
    setting.fault = info->fault;
    if (equals < 0 && info->kind != FaultKind::Milliseconds) {
        setting.value = 1;
        return QString();
    }
    bool isNumber = false;
    setting.value = text.mid(equals + 1).toInt(&isNumber);
    if (equals < 0 || !isNumber || setting.value < 0 || setting.value > info->most)
        return QStringLiteral("the value of %1 must be %2, such as %1=%3")
            .arg(name, valuesOf(*info))
            .arg(qMin(info->most, 1000));
    return QString();
}

void Faults::set(const FaultSetting &setting, const QDateTime &time)
{
    const std::lock_guard lock(m_mutex);
    Value &value = m_values[size_t(setting.fault)];
    if (value.since != time)
        value.before = value.latest;
    value.latest = setting.value;
    value.since = time;
    m_changed.notify_all();
}

int Faults::value(Fault fault) const
{
    const std::lock_guard lock(m_mutex);
    const Value &value = m_values[size_t(fault)];
    const QDateTime *const frozen = FrozenTime::current();
    return frozen && value.since.isValid() && *frozen < value.since ? value.before : value.latest;
}

bool Faults::take(Fault fault)
{
    const std::lock_guard lock(m_mutex);
    int &left = m_values[size_t(fault)].latest;
    if (left == 0)
        return false;
    --left;
    return true;
}

void Faults::awaitSlowServer(double speed)
{
    using Clock = std::chrono::steady_clock;
    const Clock::time_point begin = Clock::now();
    std::unique_lock lock(m_mutex);
    while (const int delay = m_values[size_t(Fault::SlowAnswers)].latest) {
        const auto end = begin + std::chrono::microseconds(qint64(delay * 1000.0 / speed));
        if (Clock::now() >= end)
            return;
        m_changed.wait_until(lock, end);
    }
}

} // namespace sim
