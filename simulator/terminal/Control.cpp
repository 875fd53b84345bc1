#include "terminal/Control.h"

#include "exchange/Exchange.h"
#include "platform/Agenda.h"
#include "platform/Logging.h"
#include "terminal/OrderFlow.h"
#include "terminal/Terminal.h"
#include "traffic/Log.h"

#include <future>

namespace sim {

namespace {

constexpr int kMostDays = 366; ///< of a jump: all settlements on the way are played, which must end some time

} // namespace

Control::Control(Terminal &terminal, Faults &faults, Agenda &agenda, OrderFlow &flow)
    : m_terminal(terminal), m_faults(faults), m_agenda(agenda), m_flow(flow)
{
}

void Control::plan(const QVector<TimelineEntry> &timeline)
{
    for (const TimelineEntry &entry : timeline) {
        // Told at once, and not only when its time has come: a scenario can also name securities that are made up.
        const QString &symbol = entry.command.symbol;
        if (!symbol.isEmpty() && !m_terminal.exchange().instrument(symbol))
            qCWarning(terminalLog, "the timeline at %s: %s is not listed",
                      qUtf8Printable(entry.time.toString(Qt::ISODate)), qUtf8Printable(symbol));
        m_agenda.enter(entry.time, [this, command = entry.command](const QDateTime &time) {
            const QString problem = carryOut(command, time);
            if (!problem.isEmpty())
                qCWarning(terminalLog, "the timeline at %s: %s", qUtf8Printable(time.toString(Qt::ISODate)),
                          qUtf8Printable(problem));
        });
    }
}

void Control::run(const Command &command, Listener done)
{
    m_agenda.soon([this, command, done = std::move(done)](const QDateTime &time) {
        traffic::Entry entry;
        entry.kind = traffic::Entry::Command;
        entry.name = command.text;
        entry.call = m_terminal.heldCall();
        traffic::log().add(std::move(entry));
        done(carryOut(command, time));
    });
}

QString Control::runAndWait(const Command &command)
{
    std::promise<QString> done;
    run(command, [&](const QString &problem) { done.set_value(problem); });
    return done.get_future().get();
}

void Control::awaitRuns()
{
    std::promise<void> done;
    m_agenda.soon([&](const QDateTime &) { done.set_value(); });
    done.get_future().wait();
}

void Control::setDrop(Drop drop)
{
    const std::lock_guard lock(m_mutex);
    m_drop = std::move(drop);
}

QString Control::carryOut(const Command &command, const QDateTime &time)
{
    m_terminal.desk().advance(time); // what filled before does not depend on the command
    switch (command.name) {
    case CommandName::Pause:
        m_terminal.pause();
        break;
    case CommandName::Resume:
        return resume(command, time);
    case CommandName::Step:
        m_terminal.pause();
        m_terminal.skipTo(m_terminal.exchange().timeOfStep(m_terminal.exchange().stepAt(time) + 1));
        break;
    case CommandName::Speed:
        m_terminal.setSpeed(command.speed);
        break;
    case CommandName::Jump:
        return jump(command, time);
    case CommandName::Fault:
        m_faults.set(command.fault, time);
        break;
    case CommandName::Clear:
        if (!command.isOfAll)
            m_faults.set(command.fault, time);
        else
            for (const FaultInfo &info : Faults::all())
                m_faults.set({info.fault, 0}, time);
        break;
    case CommandName::Halt:
        return halt(command, time);
    case CommandName::Burst:
        m_flow.burst(command.count, time);
        break;
    case CommandName::Drop:
        return drop(command);
    }
    return QString();
}

QString Control::resume(const Command &command, const QDateTime &time)
{
    if (command.symbol.isEmpty()) {
        m_terminal.resume();
        return QString();
    }
    Exchange &exchange = m_terminal.exchange();
    if (!exchange.isHalted(command.symbol, exchange.stepAt(time)))
        return QStringLiteral("%1 is not halted").arg(command.symbol);
    exchange.resume(command.symbol, time);
    return QString();
}

QString Control::halt(const Command &command, const QDateTime &time)
{
    if (!m_terminal.exchange().instrument(command.symbol))
        return QStringLiteral("%1 is not listed").arg(command.symbol);
    m_terminal.exchange().halt(command.symbol, time);
    return QString();
}

QString Control::jump(const Command &command, const QDateTime &time)
{
    const QDateTime target = jumpTarget(command.time, time, m_terminal.exchange().calendar());
    if (!target.isValid())
        return QStringLiteral("%1 has passed: it is %2")
            .arg(command.time, time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")));
    if (target > time.addDays(kMostDays))
        return QStringLiteral("%1 is more than a year ahead: jump there in steps").arg(command.time);
    m_flow.skipTo(target);
    m_terminal.skipTo(target);
    return QString();
}

QString Control::drop(const Command &command)
{
    const std::lock_guard lock(m_mutex);
    if (m_drop)
        m_drop(command.isOfAll ? 0 : command.count);
    return QString();
}

} // namespace sim
