#include "CommandLine.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

namespace sim {

namespace {

constexpr double kMinSpeed = 0.01;
constexpr double kMaxSpeed = 1000;

const QString kPort = QStringLiteral("port");
const QString kScenario = QStringLiteral("scenario");
const QString kSeed = QStringLiteral("seed");
const QString kSpeed = QStringLiteral("speed");
const QString kLogin = QStringLiteral("login");
const QString kRoot = QStringLiteral("root");
const QString kAllowOrigin = QStringLiteral("allow-origin");
const QString kReplay = QStringLiteral("replay"); // a word, and not an option
const QString kRecord = QStringLiteral("record");
const QString kStep = QStringLiteral("step");
const QString kVerify = QStringLiteral("verify");
const QString kHelp = QStringLiteral("help");
const QString kVersion = QStringLiteral("version");

/// Whether the text looks like an origin as browsers send it.
bool isOrigin(const QString &text)
{
    static const QRegularExpression form(QStringLiteral("^[a-z][a-z0-9+.-]*://[^/?#\\s@]+\\z"));
    return form.match(text).hasMatch();
}

/// The workbench page that is installed beside the program; empty when there is none.
QString installedWorkbench()
{
    const QDir folder(QCoreApplication::applicationDirPath() + QStringLiteral("/../share/VarnelWebSDK/workbench"));
    return folder.exists() ? folder.canonicalPath() : QString();
}

void addOptions(QCommandLineParser &parser)
{
    parser.setApplicationDescription(QStringLiteral(
        "A simulated securities terminal for web pages. Everything in it is invented; no order leaves this machine."));
    parser.addOptions({
        {kPort, QStringLiteral("Listen on this port of the loopback address; 0 for any free one (default 8900)."),
         QStringLiteral("N")},
        {kScenario, QStringLiteral("Play the scenario of this file instead of the built-in one."),
         QStringLiteral("FILE")},
        {kSeed, QStringLiteral("Use this seed for the market instead of the scenario's."), QStringLiteral("N")},
        {kSpeed, QStringLiteral("Run time this many times as fast as real time, 0.01 to 1000 (default 1)."),
         QStringLiteral("X")},
        {kLogin, QStringLiteral("Log in with this account of the scenario (default: its first)."),
         QStringLiteral("ACCOUNT")},
        {kRoot,
         QStringLiteral("Serve the files of this folder over HTTP (default: the workbench, where it is installed)."),
         QStringLiteral("DIR")},
        {kAllowOrigin,
         QStringLiteral("Also accept pages of this origin, such as http://localhost:5173. May be repeated."),
         QStringLiteral("ORIGIN")},
        {kRecord, QStringLiteral("Record all calls, answers and events of this run in the file."),
         QStringLiteral("FILE")},
        {kStep, QStringLiteral("With replay: play one call for each Enter.")},
        {kVerify, QStringLiteral("With replay: compare each reply with the recorded one, and end with status 1 at the "
                                 "first difference. Listens only with --port.")},
        {{QStringLiteral("h"), kHelp}, QStringLiteral("Show this help.")},
        {{QStringLiteral("v"), kVersion}, QStringLiteral("Show the version.")},
    });
    parser.addPositionalArgument(kReplay, QStringLiteral("Play a recording again: its pages make their calls again."),
                                 QStringLiteral("[replay FILE]"));
}

} // namespace

CommandLine::Outcome CommandLine::parse(const QStringList &arguments)
{
    QCommandLineParser parser;
    addOptions(parser);
    if (!parser.parse(arguments)) {
        text = parser.errorText();
        return Refuse;
    }
    if (parser.isSet(kHelp)) {
        text = parser.helpText();
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

QString CommandLine::check(const QCommandLineParser &parser)
{
    const QStringList words = parser.positionalArguments();
    isReplay = words.value(0) == kReplay;
    if (!isReplay && !words.isEmpty())
        return QStringLiteral("\"%1\" is not an option").arg(words.first());

    bool ok = true;
    if (parser.isSet(kPort))
        port = parser.value(kPort).toUShort(&ok);
    if (!ok)
        return QStringLiteral("--port \"%1\" is not a port number").arg(parser.value(kPort));

    if (parser.isSet(kSpeed))
        speed = parser.value(kSpeed).toDouble(&ok);
    if (!ok || !(speed >= kMinSpeed && speed <= kMaxSpeed))
        return QStringLiteral("--speed \"%1\" is not a number from 0.01 to 1000").arg(parser.value(kSpeed));

    root = parser.isSet(kRoot) ? parser.value(kRoot) : installedWorkbench();
    if (parser.isSet(kRoot) && !QFileInfo(root).isDir())
        return QStringLiteral("--root \"%1\" is not a folder").arg(root);

    allowedOrigins = parser.values(kAllowOrigin);
    for (const QString &origin : qAsConst(allowedOrigins)) {
        if (!isOrigin(origin))
            return QStringLiteral("--allow-origin \"%1\" is not an origin such as http://localhost:5173").arg(origin);
    }
    recordTo = parser.value(kRecord);
    return isReplay ? checkReplay(parser) : checkScenario(parser);
}

QString CommandLine::checkScenario(const QCommandLineParser &parser)
{
    for (const QString &option : {kStep, kVerify}) {
        if (parser.isSet(option))
            return QStringLiteral("--%1 is for replay only").arg(option);
    }
    QFile file(parser.isSet(kScenario) ? parser.value(kScenario) : Scenario::defaultFile());
    if (!file.open(QIODevice::ReadOnly))
        return QStringLiteral("scenario %1: %2").arg(file.fileName(), file.errorString());
    scenarioText = file.readAll();
    QString error;
    if (!Scenario::parse(scenarioText, file.fileName(), scenario, error))
        return QStringLiteral("scenario ") + error;

    bool ok = true;
    if (parser.isSet(kSeed))
        scenario.seed = parser.value(kSeed).toULongLong(&ok);
    if (!ok)
        return QStringLiteral("--seed \"%1\" is not a whole number").arg(parser.value(kSeed));
    return logIn(parser.isSet(kLogin) ? parser.value(kLogin) : scenario.logins.first().account);
}

QString CommandLine::checkReplay(const QCommandLineParser &parser)
{
    const QStringList words = parser.positionalArguments();
    if (words.size() != 2)
        return QStringLiteral("replay needs one file");
    for (const QString &option : {kScenario, kSeed, kLogin, kRecord}) {
        if (parser.isSet(option))
            return QStringLiteral("--%1 is not for replay: the recording has it").arg(option);
    }
    if (parser.isSet(kStep) + parser.isSet(kVerify) + parser.isSet(kSpeed) > 1)
        return QStringLiteral("only one of --speed, --step and --verify can be chosen");
    mode = parser.isSet(kVerify) ? Replay::Verify : parser.isSet(kStep) ? Replay::Stepwise : Replay::Timed;
    listens = mode != Replay::Verify || parser.isSet(kPort);

    QString error;
    if (!recording.open(words[1], error))
        return error;
    const RecordingHead &head = recording.head();
    if (!Scenario::parse(head.scenario, words[1] + QStringLiteral(": line 1: the scenario"), scenario, error))
        return error;
    scenario.seed = head.seed;
    if (!parser.isSet(kSpeed))
        speed = qBound(kMinSpeed, head.speed, kMaxSpeed);
    return logIn(head.login);
}

QString CommandLine::logIn(const QString &account)
{
    QStringList accounts;
    for (const Login &known : qAsConst(scenario.logins)) {
        if (known.account == account) {
            login = known;
            return QString();
        }
        accounts.append(known.account);
    }
    return QStringLiteral("--login \"%1\" is not an account of the scenario: it has %2")
        .arg(account, accounts.join(QStringLiteral(", ")));
}

} // namespace sim
