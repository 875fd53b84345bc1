#include "platform/Command.h"

#include "exchange/TradingCalendar.h"

#include <QStringList>

namespace sim {

namespace {

const QString kClose = QStringLiteral("close");
const QString kTimeOfDay = QStringLiteral("HH:mm:ss");
const QString kDateAndTime = QStringLiteral("yyyy-MM-dd HH:mm:ss");

bool isNumberIn(const QString &text, int most, int &number)
{
    bool ok = false;
    number = text.toInt(&ok);
    return ok && number >= 1 && number <= most;
}

QString noArgument(const QString &argument, Command &)
{
    return argument.isEmpty() ? QString() : QStringLiteral("takes nothing behind it");
}

QString readSymbolIfAny(const QString &argument, Command &command)
{
    command.symbol = argument;
    return QString();
}

QString readSymbol(const QString &argument, Command &command)
{
    command.symbol = argument;
    return argument.isEmpty() ? QStringLiteral("needs a symbol such as 609801.SH") : QString();
}

QString readSpeed(const QString &argument, Command &command)
{
    bool ok = false;
    command.speed = argument.toDouble(&ok);
    return ok && command.speed >= Command::kMinSpeed && command.speed <= Command::kMaxSpeed
               ? QString()
               : QStringLiteral("needs a number from 0.01 to 1000");
}

QString readTime(const QString &argument, Command &command)
{
    command.time = argument;
    return argument == kClose || QTime::fromString(argument, kTimeOfDay).isValid() ||
                   QDateTime::fromString(argument, kDateAndTime).isValid()
               ? QString()
               : QStringLiteral("needs \"close\", a time such as 14:57:00, or one such as 2025-03-04 09:30:00");
}

QString readFault(const QString &argument, Command &command)
{
    const QString problem = Faults::parse(argument, command.fault);
    return problem.isEmpty() ? problem : QStringLiteral("needs a fault: ") + problem;
}

QString readFaultToClear(const QString &argument, Command &command)
{
    command.isOfAll = argument.isEmpty();
    if (command.isOfAll)
        return QString();
    const FaultInfo *const info = Faults::find(argument);
    if (!info)
        return QStringLiteral("needs the name of a fault, or nothing behind it to clear them all");
    command.fault = {info->fault, 0};
    return QString();
}

QString readOrders(const QString &argument, Command &command)
{
    return isNumberIn(argument, Command::kMostOrders, command.count)
               ? QString()
               : QStringLiteral("needs a number of orders from 1 to %1").arg(Command::kMostOrders);
}

QString readPage(const QString &argument, Command &command)
{
    command.isOfAll = argument.isEmpty();
    return command.isOfAll || isNumberIn(argument, INT_MAX, command.count)
               ? QString()
               : QStringLiteral("needs the number of a page, or nothing behind it to drop them all");
}

using Reading = QString (*)(const QString &argument, Command &command);

/// In the order of the table.
constexpr std::array<Reading, Command::kCount> kReadings{noArgument, readSymbolIfAny, noArgument,       readSpeed,
                                                         readTime,   readFault,       readFaultToClear, readSymbol,
                                                         readOrders, readPage};

} // namespace

const std::array<CommandInfo, Command::kCount> &Command::all()
{
    static const std::array<CommandInfo, kCount> table{{
        {CommandName::Pause, "pause", "", "Lets exchange time stand still: no quote, no fill, no message on the bus.",
         false},
        {CommandName::Resume, "resume", "[SYMBOL]", "Lets time run on; with a symbol, ends the halt of that security.",
         false},
        {CommandName::Step, "step", "", "Pauses, and goes to the next change of the quotes.", false},
        {CommandName::Speed, "speed", "X", "Runs time X times as fast as real time, 0.01 to 1000.", false},
        {CommandName::Jump, "jump", "TIME",
         "Goes to a later time at once: close (the next one), 14:57:00, or 2025-03-04 09:30:00. Open orders fill on "
         "the way.",
         true},
        {CommandName::Fault, "fault", "NAME[=VALUE]", "Switches a fault on, or sets its value; 0 switches it off.",
         true},
        {CommandName::Clear, "clear", "[NAME]", "Switches a fault off, or all.", true},
        {CommandName::Halt, "halt", "SYMBOL", "Halts a security: it is not traded until its halt ends.", true},
        {CommandName::Burst, "burst", "N", "Enters N orders at once, and cancels them a second later.", true},
        {CommandName::Drop, "drop", "[PAGE]", "Breaks the connection of the page with this number, or of all.", false},
    }};
    return table;
}

QString Command::parse(const QString &text, Command &command)
{
    const QString simplified = text.simplified();
    const QString word = simplified.section(QLatin1Char(' '), 0, 0);
    for (const CommandInfo &info : all()) {
        if (word != QLatin1String(info.word))
            continue;
        command = Command();
        command.text = simplified;
        command.name = info.name;
        const QString problem = kReadings[size_t(info.name)](simplified.section(QLatin1Char(' '), 1), command);
        return problem.isEmpty() ? problem : QStringLiteral("%1 %2").arg(word, problem);
    }
    QStringList words;
    for (const CommandInfo &info : all())
        words.append(QLatin1String(info.word));
    return QStringLiteral("\"%1\" is not a command: there are %2").arg(word, words.join(QStringLiteral(", ")));
}

bool Command::isPlayedAgain() const
{
    return all()[size_t(name)].isPlayedAgain || !symbol.isEmpty(); // the end of a halt changes the market
}

QDateTime jumpTarget(const QString &time, const QDateTime &now, const TradingCalendar &calendar)
{
    QDateTime target;
    if (time == kClose)
        target = calendar.endOfDay(calendar.daysEndedBy(now));
    else if (const QTime ofDay = QTime::fromString(time, kTimeOfDay); ofDay.isValid())
        target = QDateTime(now.date(), ofDay, Qt::UTC);
    else
        target = QDateTime::fromString(time, kDateAndTime);
    target.setTimeSpec(Qt::UTC);
    return target > now ? target : QDateTime();
}

} // namespace sim
