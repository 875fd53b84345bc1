#pragma once

#include "HostApi.h"
#include "platform/Command.h"
#include "platform/ScenarioEvents.h"

#include <QDateTime>

#include <functional>
#include <mutex>

namespace sim {

class Agenda;
class OrderFlow;
class Terminal;

/// Carries out commands: those of the scenario's timeline at their times, and those of people as soon as they come.
/// Made by the Terminal, which outlives it. Any thread.
class VARNEL_HOST_API Control {
public:
    Control(Terminal &terminal, Faults &faults, Agenda &agenda, OrderFlow &flow);

    /// Enters the commands of a timeline. Before the terminal's threads begin.
    void plan(const QVector<TimelineEntry> &timeline);

    /// Hears why the command was not carried out, and nothing when it was; on the agenda's thread.
    using Listener = std::function<void(const QString &problem)>;

    /// Carries it out, at the exchange time of this moment, and enters it in the log of the traffic. If a call of a
    /// page is being made, it waits for its end, or until a slow server holds the call.
    void run(const Command &command, Listener done);

    /// The same, and waits for it. Returns why it was not carried out. Neither from an action of the agenda, nor in a
    /// call of a page outside the wait for a slow server.
    QString runAndWait(const Command &command);

    /// Waits until all that was to be run before has been. Not from an action of the agenda.
    void awaitRuns();

    /// Drops the connection of the page with that number, or all for 0. Called on the agenda's thread, or on that of a
    /// page's call, as long as the function is set.
    using Drop = std::function<void(int page)>;

    /// An empty function: there are no connections. Waits for a call of the function before.
    void setDrop(Drop drop);

private:
    QString carryOut(const Command &command, const QDateTime &time);
    QString resume(const Command &command, const QDateTime &time);
    QString halt(const Command &command, const QDateTime &time);
    QString jump(const Command &command, const QDateTime &time);
    QString drop(const Command &command);

    Terminal &m_terminal;
    Faults &m_faults;
    Agenda &m_agenda;
    OrderFlow &m_flow;

    std::mutex m_mutex;
    Drop m_drop; ///< guarded by m_mutex
};

} // namespace sim
