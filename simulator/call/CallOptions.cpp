#include "call/CallOptions.h"

#include "platform/Command.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>

namespace sim {

namespace {

constexpr int kMaxSeconds = 24 * 60 * 60;

const QString kPort = QStringLiteral("port");
const QString kTimeout = QStringLiteral("timeout");
const QString kJson = QStringLiteral("json");
const QString kControl = QStringLiteral("control");
const QString kFollow = QStringLiteral("follow");
const QString kSubscribe = QStringLiteral("subscribe");
const QString kCount = QStringLiteral("count");
const QString kHelp = QStringLiteral("help");
const QString kVersion = QStringLiteral("version");

void addOptions(QCommandLineParser &parser)
{
    parser.setApplicationDescription(QStringLiteral(
        "Makes a call to a running simulator as a page would, and prints the reply.\n"
        "With --follow it prints events instead, one on each line, until Ctrl-C.\n\n"
        "Status: 0 for a success, 1 for a refusal, no answer or no simulator, 2 for a mistake in the command line."));
    parser.addOptions({
        {kPort, QStringLiteral("The port of the simulator (default 8900)."), QStringLiteral("N")},
        {kTimeout, QStringLiteral("Wait so long for the reply (default 10), or for each event (default: without end)."),
         QStringLiteral("SECONDS")},
        {kJson, QStringLiteral("Read each argument as JSON: \"text\", 5, true, {…}, […]. Without it each is a text.")},
        {kControl, QStringLiteral("Give the simulator a command, such as: --control fault refuse-orders=3. Without one "
                                  "print its state. The commands are listed below.")},
        {kFollow, QStringLiteral("Print each event of these names as it comes.")},
        {kSubscribe, QStringLiteral("With --follow: subscribe to the quotes of these symbols first."),
         QStringLiteral("SYMBOL,…")},
        {kCount, QStringLiteral("With --follow: end after so many events."), QStringLiteral("N")},
        {{QStringLiteral("h"), kHelp}, QStringLiteral("Show this help.")},
        {{QStringLiteral("v"), kVersion}, QStringLiteral("Show the version.")},
    });
    parser.addPositionalArgument(
        QStringLiteral("METHOD"),
        QStringLiteral(
            "The call, such as Data_getToken_REQ, and its arguments behind the uuid. Options come before it."),
        QStringLiteral("METHOD [ARG…] | --follow EVENT… | --control [COMMAND [ARG…]]"));
    // An argument may begin with a minus, such as a number.
    parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
}

/// The value of a JSON text; nothing when it is none.
std::optional<QVariant> valueOf(const QString &json)
{
    // Qt reads only arrays and objects.
    const QJsonDocument document = QJsonDocument::fromJson('[' + json.toUtf8() + ']');
    if (!document.isArray() || document.array().size() != 1)
        return std::nullopt;
    return document.array().first().toVariant();
}

/// The tables of the commands and of the faults.
QString commandsForHelp()
{
    QString text = QStringLiteral("\nCommands:\n");
    for (const CommandInfo &info : Command::all())
        text += QStringLiteral("  %1 %2\n      %3\n")
                    .arg(QLatin1String(info.word), QLatin1String(info.argument), QLatin1String(info.sentence));
    text += QStringLiteral("\nFaults:\n");
    for (const FaultInfo &info : Faults::all())
        text += QStringLiteral("  %1\n      %2\n").arg(QLatin1String(info.name), QLatin1String(info.sentence));
    return text;
}

/// The whole number of an option from 1 to most; nothing when it is none.
std::optional<int> numberIn(const QString &text, int most)
{
    bool ok = false;
    const int number = text.toInt(&ok);
    return ok && number >= 1 && number <= most ? std::make_optional(number) : std::nullopt;
}

} // namespace

CallOptions::Outcome CallOptions::parse(const QStringList &arguments)
{
    QCommandLineParser parser;
    addOptions(parser);
    if (!parser.parse(arguments)) {
        text = parser.errorText();
        return Refuse;
    }
    if (parser.isSet(kHelp)) {
        text = parser.helpText() + commandsForHelp();
        return ShowText;
    }
    if (parser.isSet(kVersion)) {
        text = QCoreApplication::applicationName() + QLatin1Char(' ') + QCoreApplication::applicationVersion() +
               QLatin1Char('\n');
        return ShowText;
    }
    text = check(parser);
    return text.isEmpty() ? Run : Refuse;
}

QString CallOptions::check(const QCommandLineParser &parser)
{
    bool ok = true;
    if (parser.isSet(kPort))
        port = parser.value(kPort).toUShort(&ok);
    if (!ok || port == 0)
        return QStringLiteral("--port \"%1\" is not a port number").arg(parser.value(kPort));

    if (parser.isSet(kTimeout)) {
        const std::optional<int> seconds = numberIn(parser.value(kTimeout), kMaxSeconds);
        if (!seconds)
            return QStringLiteral("--timeout \"%1\" is not a whole number of seconds").arg(parser.value(kTimeout));
        timeout = std::chrono::seconds(*seconds);
    }
    if (parser.isSet(kCount)) {
        count = numberIn(parser.value(kCount), INT_MAX);
        if (!count)
            return QStringLiteral("--count \"%1\" is not a number of events").arg(parser.value(kCount));
    }

    const QStringList names = parser.positionalArguments();
    isControl = parser.isSet(kControl);
    if (isControl) {
        command = names.join(QLatin1Char(' '));
        Command read;
        return command.isEmpty() ? QString() : Command::parse(command, read);
    }
    if (parser.isSet(kFollow)) {
        if (names.isEmpty())
            return QStringLiteral("--follow needs the name of an event, such as on_tickUpdate");
        if (parser.isSet(kJson))
            return QStringLiteral("--json is for calls, and not for --follow");
        events = names;
        symbols = parser.value(kSubscribe);
        return QString();
    }
    for (const QString &option : {kSubscribe, kCount}) {
        if (parser.isSet(option))
            return QStringLiteral("--%1 is for --follow only").arg(option);
    }
    if (names.isEmpty())
        return QStringLiteral("no call was named; --help shows how");
    method = names.first();
    for (const QString &argument : names.mid(1)) {
        const std::optional<QVariant> value = parser.isSet(kJson) ? valueOf(argument) : QVariant(argument);
        if (!value)
            return QStringLiteral("the argument \"%1\" is not JSON").arg(argument);
        args.append(*value);
    }
    return QString();
}

} // namespace sim
