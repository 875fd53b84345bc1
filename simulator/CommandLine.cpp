#include "CommandLine.h"

#include "recording/SettingsFolder.h"

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
const QString kInspector = QStringLiteral("inspector");
const QString kAllowOrigin = QStringLiteral("allow-origin");
const QString kWindow = QStringLiteral("window");
const QString kConfirmOrders = QStringLiteral("confirm-orders");
const QString kOpen = QStringLiteral("open");
const QString kReplay = QStringLiteral("replay"); // a word, and not an option
const QString kFault = QStringLiteral("fault");
const QString kRecord = QStringLiteral("record");
const QString kStep = QStringLiteral("step");
const QString kVerify = QStringLiteral("verify");
const QString kHelp = QStringLiteral("help");
const QString kVersion = QStringLiteral("version");

/// Whether the text looks like an origin as browsers send it.
bool isOrigin(const QString &text)
{
    static const QRegularExpression form(
        QStringLiteral("^[a-z][a-z0-9+.-]*://([A-Za-z0-9._-]+|\\[[0-9A-Fa-f:.]+\\])(:[0-9]{1,5})?\\z"));
    return form.match(text).hasMatch();
}

/// The folder of that page where it is installed beside the program; empty when it is not.
QString installed(const QString &page)
{
    const QDir folder(SettingsFolder::programFolder() + QStringLiteral("/../share/VarnelWebSDK/") + page);
    return folder.exists() ? folder.canonicalPath() : QString();
}

/// The folder of the option, or that of the installed page.
QString folderOf(const QCommandLineParser &parser, const QString &option, const QString &page)
{
    return parser.isSet(option) ? parser.value(option) : installed(page);
}

void addOptions(QCommandLineParser &parser)
{
    parser.setApplicationDescription(QStringLiteral(
        "A simulated securities terminal for web pages. Everything in it is invented; no order leaves this machine."));
    parser.addPositionalArgument(kReplay, QStringLiteral("Play a recording: its pages make their calls again."),
                                 QStringLiteral("[replay FILE]"));
    parser.addPositionalArgument(QStringLiteral("PAGE"),
                                 QStringLiteral("Addresses to open in the window instead of the simulator's own."),
                                 QStringLiteral("[PAGE...]"));
    parser.addOptions({
        {kPort, QStringLiteral("Listen on this port of the loopback address; 0 for any free one (default 8900)."),
         QStringLiteral("N")},
        {kScenario,
         QStringLiteral("Play this built-in scenario (%1), or the one of this file (default: %2).")
             .arg(Scenario::builtInNames().join(QStringLiteral(", ")), Scenario::builtInNames().first()),
         QStringLiteral("NAME|FILE")},
        {kSeed, QStringLiteral("Use this seed for the market instead of the scenario's."), QStringLiteral("N")},
        {kSpeed, QStringLiteral("Run time this many times as fast as real time, 0.01 to 1000 (default 1)."),
         QStringLiteral("X")},
        {kLogin, QStringLiteral("Log in with this account of the scenario (default: its first)."),
         QStringLiteral("ACCOUNT")},
        {kRoot,
         QStringLiteral("Serve the files of this folder over HTTP (default: the workbench, where it is installed)."),
         QStringLiteral("DIR")},
        {kInspector,
         QStringLiteral("Serve the inspector of this folder at /inspector (default: where it is installed)."),
         QStringLiteral("DIR")},
        {kAllowOrigin,
         QStringLiteral("Also accept pages of this origin, such as http://localhost:5173. May be repeated."),
         QStringLiteral("ORIGIN")},
        {kWindow, QStringLiteral("Open a window whose tabs show pages as the terminal does.")},
        {kConfirmOrders, QStringLiteral("Ask in the window before orders are placed.")},
        {kOpen, QStringLiteral("Open the address in the browser of the desktop.")},
        {kFault, QStringLiteral("Begin with this fault. May be repeated. The faults are listed below."),
         QStringLiteral("NAME[=VALUE]")},
        {kRecord, QStringLiteral("Record all calls, answers and events of this run in the file."),
         QStringLiteral("FILE")},
        {kStep, QStringLiteral("With replay: play one call for each Enter.")},
        {kVerify, QStringLiteral("With replay: compare each reply with the recorded one, and end with status 1 at the "
                                 "first difference. Listens only with --port.")},
        {{QStringLiteral("h"), kHelp}, QStringLiteral("Show this help.")},
        {{QStringLiteral("v"), kVersion}, QStringLiteral("Show the version.")},
    });
}

/// The table of the faults.
QString faultsForHelp()
{
    QString text = QStringLiteral("\nFaults:\n");
    for (const FaultInfo &info : Faults::all()) {
        const QString value = info.kind == FaultKind::Switch  ? QString()
                              : info.kind == FaultKind::Count ? QStringLiteral("[=N]")
                                                              : QStringLiteral("=MS");
        text += QStringLiteral("  %1\n      %2\n").arg(QLatin1String(info.name) + value, QLatin1String(info.sentence));
    }
    return text;
}

} // namespace

CommandLine::Outcome CommandLine::parse(const QStringList &arguments)
{
    QCommandLineParser parser;
    addOptions(parser);
    const auto refuse = [this](const QString &problem) {
        text = QStringLiteral("varnel-simulator: ") + problem;
        return Refuse;
    };
    if (!parser.parse(arguments))
        return refuse(parser.errorText());
    if (parser.isSet(kHelp)) {
        text = parser.helpText() + faultsForHelp();
        return ShowText;
    }
    if (parser.isSet(kVersion)) {
        text = QCoreApplication::applicationName() + QLatin1Char(' ') + QCoreApplication::applicationVersion() +
               QLatin1Char('\n');
        return ShowText;
    }
    if (const QString problem = checkOptions(parser); !problem.isEmpty())
        return refuse(problem);
    if (!readScenario(parser))
        return Refuse;
    const QString problem = checkWithScenario(parser);
    return problem.isEmpty() ? Run : refuse(problem);
}

QString CommandLine::checkOptions(const QCommandLineParser &parser)
{
    if (const QString problem = checkAddresses(parser); !problem.isEmpty())
        return problem;

    bool ok = true;
    if (parser.isSet(kPort))
        port = parser.value(kPort).toUShort(&ok);
    if (!ok)
        return QStringLiteral("--port \"%1\" is not a port number").arg(parser.value(kPort));

    if (parser.isSet(kSpeed))
        speed = parser.value(kSpeed).toDouble(&ok);
    if (!ok || !(speed >= kMinSpeed && speed <= kMaxSpeed))
        return QStringLiteral("--speed \"%1\" is not a number from 0.01 to 1000").arg(parser.value(kSpeed));

    root = folderOf(parser, kRoot, QStringLiteral("workbench"));
    inspector = folderOf(parser, kInspector, QStringLiteral("inspector"));
    for (const QString &option : {kRoot, kInspector}) {
        if (parser.isSet(option) && !QFileInfo(parser.value(option)).isDir())
            return QStringLiteral("--%1 \"%2\" is not a folder").arg(option, parser.value(option));
    }

    open = parser.isSet(kOpen);
    allowedOrigins = parser.values(kAllowOrigin);
    for (const QString &origin : qAsConst(allowedOrigins)) {
        if (!isOrigin(origin))
            return QStringLiteral("--allow-origin \"%1\" is not an origin such as http://localhost:5173").arg(origin);
    }
    return isReplay ? checkReplay(parser) : checkRun(parser);
}

QString CommandLine::checkAddresses(const QCommandLineParser &parser)
{
    window = window || parser.isSet(kWindow);
    confirmOrders = parser.isSet(kConfirmOrders);
    QStringList addresses = parser.positionalArguments();
    isReplay = addresses.value(0) == kReplay;
    if (isReplay)
        addresses = addresses.mid(2); // behind the word and its file
    if (!window && !addresses.isEmpty())
        return isReplay ? QStringLiteral("replay needs one file")
                        : QStringLiteral("\"%1\" is not an option").arg(addresses.first());
    if (!window && confirmOrders)
        return QStringLiteral("--confirm-orders needs --window");
    for (const QString &address : addresses) {
        const QUrl url(address);
        if (!url.isValid() || !url.scheme().startsWith(QLatin1String("http")) || url.host().isEmpty())
            return QStringLiteral("\"%1\" is not an address such as http://localhost:5173").arg(address);
        pages.append(url);
    }
    return QString();
}

QString CommandLine::checkRun(const QCommandLineParser &parser)
{
    for (const QString &option : {kStep, kVerify}) {
        if (parser.isSet(option))
            return QStringLiteral("--%1 is for replay only").arg(option);
    }
    recordTo = parser.value(kRecord);
    const QString wanted = parser.value(kScenario);
    if (parser.isSet(kScenario) && Scenario::builtIn(wanted).isEmpty() && !QFileInfo::exists(wanted))
        return QStringLiteral("--scenario \"%1\" is neither a file nor a built-in scenario: there are %2")
            .arg(wanted, Scenario::builtInNames().join(QStringLiteral(", ")));
    return QString();
}

QString CommandLine::checkReplay(const QCommandLineParser &parser)
{
    const QString file = parser.positionalArguments().value(1);
    if (file.isEmpty())
        return QStringLiteral("replay needs one file");
    for (const QString &option : {kScenario, kSeed, kLogin, kFault, kRecord}) {
        if (parser.isSet(option))
            return QStringLiteral("--%1 is not for replay: the recording has it").arg(option);
    }
    if (parser.isSet(kStep) + parser.isSet(kVerify) + parser.isSet(kSpeed) > 1)
        return QStringLiteral("only one of --speed, --step and --verify can be chosen");
    mode = parser.isSet(kVerify) ? Replay::Verify : parser.isSet(kStep) ? Replay::Stepwise : Replay::Timed;
    for (const QString &option : {kWindow, kConfirmOrders, kOpen}) {
        if (mode == Replay::Verify && parser.isSet(option))
            return QStringLiteral("--%1 is not for --verify, which ends at once").arg(option);
    }
    listens = mode != Replay::Verify || parser.isSet(kPort);
    window = window && mode != Replay::Verify;
    QString error;
    recording.open(file, error);
    return error;
}

/// The lines about mistakes in a file begin with the place, so that editors and terminals find it.
bool CommandLine::readScenario(const QCommandLineParser &parser)
{
    if (isReplay)
        return Scenario::parse(recording.head().scenario, recording.placeOfHead() + QStringLiteral("scenario"),
                               scenario, text);
    const QString wanted = parser.isSet(kScenario) ? parser.value(kScenario) : Scenario::builtInNames().first();
    const QString builtIn = Scenario::builtIn(wanted);
    QFile file(builtIn.isEmpty() ? wanted : builtIn);
    if (!file.open(QIODevice::ReadOnly)) {
        text = QStringLiteral("%1: %2").arg(file.fileName(), file.errorString());
        return false;
    }
    scenarioText = file.readAll();
    return Scenario::parse(scenarioText, file.fileName(), scenario, text);
}

QString CommandLine::checkWithScenario(const QCommandLineParser &parser)
{
    if (isReplay) {
        const RecordingHead &head = recording.head();
        scenario.seed = head.seed;
        if (const QString problem = addFaults(head.faults); !problem.isEmpty())
            return recording.placeOfHead() + QStringLiteral("faults: ") + problem;
        if (!parser.isSet(kSpeed))
            speed = qBound(kMinSpeed, head.speed, kMaxSpeed);
        return logIn(head.login, recording.placeOfHead() + QStringLiteral("login"));
    }
    bool ok = true;
    if (parser.isSet(kSeed))
        scenario.seed = parser.value(kSeed).toULongLong(&ok);
    if (!ok)
        return QStringLiteral("--seed \"%1\" is not a whole number").arg(parser.value(kSeed));
    if (const QString problem = addFaults(parser.values(kFault)); !problem.isEmpty())
        return QStringLiteral("--fault ") + problem;
    return logIn(parser.isSet(kLogin) ? parser.value(kLogin) : scenario.logins.first().account,
                 QStringLiteral("--login"));
}

QString CommandLine::addFaults(const QStringList &texts)
{
    faults = texts;
    for (const QString &text : texts) {
        FaultSetting setting;
        if (const QString problem = Faults::parse(text, setting); !problem.isEmpty())
            return problem;
        scenario.faults.append(setting);
    }
    return QString();
}

QString CommandLine::logIn(const QString &account, const QString &source)
{
    QStringList accounts;
    for (const Login &known : qAsConst(scenario.logins)) {
        if (known.account == account) {
            login = known;
            return QString();
        }
        accounts.append(known.account);
    }
    return QStringLiteral("%1 \"%2\" is not an account of the scenario: it has %3")
        .arg(source, account, accounts.join(QStringLiteral(", ")));
}

} // namespace sim
