#pragma once

#include "HostApi.h"
#include "platform/Faults.h"

#include <QDateTime>
#include <QString>

#include <array>

namespace sim {

class TradingCalendar;

/// What the simulator can be told to do while it runs, by a scenario's timeline or by a person.
enum class CommandName { Pause, Resume, Step, Speed, Jump, Fault, Clear, Halt, Burst, Drop };

/// A line of the table of the commands.
struct CommandInfo {
    CommandName name;
    const char *word;
    const char *argument; ///< its form; empty for none, in brackets where it may be left out
    const char *sentence; ///< what it does, for a person
    bool isPlayedAgain;   ///< in the replay of a recording that has it: see Command::isPlayedAgain
};

/// A command, read from a text such as "burst 2000". A plain value.
struct VARNEL_HOST_API Command {
    static constexpr int kCount = int(CommandName::Drop) + 1;
    static constexpr double kMinSpeed = 0.01;
    static constexpr double kMaxSpeed = 1000;
    static constexpr int kMostOrders = 100000;

    /// The table, in the order of the enumeration.
    static const std::array<CommandInfo, kCount> &all();

    /// Reads a word and its argument. Returns why the text is no command; empty when it is one.
    static QString parse(const QString &text, Command &command);

    /// Whether the replay of a recording carries it out. Commands that concern the pace are not played again: a replay
    /// has its own. Neither are broken connections, because a recording has the end of each page.
    bool isPlayedAgain() const;

    QString text; ///< that was read
    CommandName name = CommandName::Pause;
    double speed = 1;
    QString symbol;       ///< to halt, or whose halt ends
    QString time;         ///< to jump to: "close", a time of the day, or a date and a time
    FaultSetting fault;   ///< to set or clear
    bool isOfAll = false; ///< all faults are cleared, all connections dropped
    int count = 0;        ///< of orders; the number of a page
};

/// The time that a jump at that time goes to. Invalid when it lies before, or is none.
QDateTime VARNEL_HOST_API jumpTarget(const QString &time, const QDateTime &now, const TradingCalendar &calendar);

} // namespace sim
