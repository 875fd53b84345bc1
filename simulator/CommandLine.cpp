#include "CommandLine.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
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
        {kAllowOrigin,
         QStringLiteral("Also accept pages of this origin, such as http://localhost:5173. May be repeated."),
         QStringLiteral("ORIGIN")},
        {{QStringLiteral("h"), kHelp}, QStringLiteral("Show this help.")},
        {{QStringLiteral("v"), kVersion}, QStringLiteral("Show the version.")},
    });
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
        text = parser.helpText();
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
    if (!parser.positionalArguments().isEmpty())
        return QStringLiteral("\"%1\" is not an option").arg(parser.positionalArguments().first());

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

    const QString wanted = parser.value(kScenario);
    if (parser.isSet(kScenario) && Scenario::builtIn(wanted).isEmpty() && !QFileInfo::exists(wanted))
        return QStringLiteral("--scenario \"%1\" is neither a file nor a built-in scenario: there are %2")
            .arg(wanted, Scenario::builtInNames().join(QStringLiteral(", ")));
    return QString();
}

/// The lines about mistakes in a file begin with the place, so that editors and terminals find it.
bool CommandLine::readScenario(const QCommandLineParser &parser)
{
    const QString wanted = parser.isSet(kScenario) ? parser.value(kScenario) : Scenario::builtInNames().first();
    const QString builtIn = Scenario::builtIn(wanted);
    return Scenario::read(builtIn.isEmpty() ? wanted : builtIn, scenario, text);
}

QString CommandLine::checkWithScenario(const QCommandLineParser &parser)
{
    bool ok = true;
    if (parser.isSet(kSeed))
        scenario.seed = parser.value(kSeed).toULongLong(&ok);
    if (!ok)
        return QStringLiteral("--seed \"%1\" is not a whole number").arg(parser.value(kSeed));

    login = scenario.logins.first();
    if (parser.isSet(kLogin)) {
        QStringList accounts;
        for (const Login &known : qAsConst(scenario.logins)) {
            if (known.account == parser.value(kLogin))
                login = known;
            accounts.append(known.account);
        }
        if (login.account != parser.value(kLogin))
            return QStringLiteral("--login \"%1\" is not an account of the scenario: it has %2")
                .arg(parser.value(kLogin), accounts.join(QStringLiteral(", ")));
    }
    return QString();
}

} // namespace sim
