#include "hostcheck/CommandLine.h"

#include <QCommandLineParser>
#include <QRegularExpression>

#include <algorithm>
#include <cstring>

namespace HostCheck {

namespace {

const QString kInProcess = QStringLiteral("in-process");
const QString kChild = QStringLiteral("child");
const QString kOnly = QStringLiteral("only");

struct TextOption {
    const char *name;
    const char *description;
    QString KnownValues::*value;
};

const TextOption textOptions[] = {
    {"symbol", "A security that exists.", &KnownValues::symbol},
    {"bond", "A bond that exists.", &KnownValues::bond},
    {"fund-account", "A fund account that has a trading account.", &KnownValues::fundAccount},
    {"trading-account", "A trading account that has a fund account.", &KnownValues::tradingAccount},
    {"start-time", "Start of the K-line requests, in the host's own form; empty when it is not given.",
     &KnownValues::startTime},
    {"stop-time", "Stop of the K-line requests, the same.", &KnownValues::stopTime},
};

QList<QCommandLineOption> options()
{
    QList<QCommandLineOption> list{
        {QStringLiteral("list"), QStringLiteral("List all checks, what they need, and what breaks when they fail.")},
        {QStringLiteral("run"),
         QStringLiteral("Run only this check. May be repeated; * and ? are wildcards. A name without wildcards is "
                        "also run when its part was not asked for."),
         QStringLiteral("name")},
        {QStringLiteral("with"),
         QStringLiteral("Also run the checks that need a login, or that place orders: login or orders. May be "
                        "repeated."),
         QStringLiteral("part")},
        {QStringLiteral("order"),
         QStringLiteral("An order for the symbol that the host takes: side,price type,price,quantity,exchange."),
         QStringLiteral("terms")},
        {QStringLiteral("junit"), QStringLiteral("Also write the results to this file, as JUnit XML."),
         QStringLiteral("file")},
        {QStringLiteral("time-limit"), QStringLiteral("Seconds that one check may take; 10 when it is not given."),
         QStringLiteral("seconds")},
        {QStringLiteral("start-limit"),
         QStringLiteral("Seconds that the host's start may take; 120 when it is not "
                        "given."),
         QStringLiteral("seconds")},
        {kInProcess, QStringLiteral("Run in this process, for debuggers: a crash ends it, and no time limit holds.")},
    };
    for (const TextOption &option : textOptions)
        list.append({QLatin1String(option.name), QLatin1String(option.description), QStringLiteral("text")});
    for (const QString &name : {kChild, kOnly}) {
        QCommandLineOption hidden(name, QString(), QStringLiteral("text"));
        hidden.setFlags(QCommandLineOption::HiddenFromHelp);
        list.append(hidden);
    }
    return list;
}

bool readSeconds(const QCommandLineParser &parser, const QString &option, int &milliseconds)
{
    if (!parser.isSet(option))
        return true;
    bool isNumber = false;
    const double seconds = parser.value(option).toDouble(&isNumber);
    milliseconds = int(std::min(seconds, 1e6) * 1000);
    return isNumber && milliseconds > 0;
}

bool readOrder(const QString &text, VarnelLogic::OrderRequest &order)
{
    const QStringList parts = text.split(QLatin1Char(','));
    if (parts.size() != 5)
        return false;
    order.side = parts[0];
    order.priceType = parts[1];
    order.price = parts[2];
    order.orderQty = parts[3].toLongLong();
    order.exchange = parts[4];
    return order.orderQty > 0;
}

bool hasWildcard(const QString &pattern)
{
    return pattern.contains(QLatin1Char('*')) || pattern.contains(QLatin1Char('?'));
}

bool matches(const QString &pattern, const QString &name)
{
    if (!hasWildcard(pattern))
        return pattern == name;
    return QRegularExpression(QRegularExpression::wildcardToRegularExpression(pattern)).match(name).hasMatch();
}

/// The chosen checks. Returns what is wrong with the choice; the empty text when nothing is.
QString select(const QStringList &patterns, const QStringList &parts, QStringList &selected)
{
    for (const QString &part : parts) {
        if (part != QLatin1String("login") && part != QLatin1String("orders"))
            return QStringLiteral("--with takes login or orders, not \"%1\"").arg(part);
    }
    const auto isOn = [&](const Check &check) {
        return check.part == Part::Basic ||
               parts.contains(check.part == Part::Login ? QStringLiteral("login") : QStringLiteral("orders"));
    };
    for (const QString &pattern : patterns) {
        const CheckTable &checks = allChecks();
        if (std::none_of(checks.begin(), checks.end(),
                         [&](const Check &check) { return matches(pattern, QLatin1String(check.name)); }))
            return QStringLiteral("no check is named \"%1\"; --list shows them all").arg(pattern);
    }
    for (const Check &check : allChecks()) {
        const QString name = QLatin1String(check.name);
        const bool isChosen =
            patterns.isEmpty() ? isOn(check)
                               : patterns.contains(name) ||
                                     (isOn(check) && std::any_of(patterns.begin(), patterns.end(),
                                                                 [&](const QString &p) { return matches(p, name); }));
        if (isChosen)
            selected.append(name);
    }
    if (selected.isEmpty())
        return QStringLiteral("--run chooses only checks whose part is off; --with switches parts on");
    return {};
}

} // namespace

bool CommandLine::runsChecks(int argc, char *argv[])
{
    for (int i = 1; i < argc && std::strcmp(argv[i], "--") != 0; ++i) {
        if (std::strcmp(argv[i], "--in-process") == 0 || std::strncmp(argv[i], "--child", 7) == 0)
            return true;
    }
    return false;
}

CommandLine CommandLine::parse(const QStringList &arguments)
{
    CommandLine line;
    const auto refuse = [&](const QString &reason) {
        line.action = Refuse;
        line.text = reason;
        return line;
    };
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Checks what the library expects of a host. What follows \"--\" is for the host's start."));
    parser.addOptions(options());
    const QCommandLineOption help = parser.addHelpOption();

    const int end = arguments.indexOf(QStringLiteral("--"));
    line.hostArguments = end < 0 ? QStringList() : arguments.mid(end + 1);
    if (!parser.parse(arguments.mid(0, end)))
        return refuse(parser.errorText());
    if (!parser.positionalArguments().isEmpty())
        return refuse(QStringLiteral("\"%1\" is no option").arg(parser.positionalArguments().first()));
    if (parser.isSet(help)) {
        line.action = ShowText;
        line.text = parser.helpText();
        return line;
    }
    if (!readSeconds(parser, QStringLiteral("time-limit"), line.timeLimit) ||
        !readSeconds(parser, QStringLiteral("start-limit"), line.startLimit))
        return refuse(QStringLiteral("a limit must be a number of seconds above zero"));
    const QString order = QStringLiteral("order");
    if (parser.isSet(order) && !readOrder(parser.value(order), line.known.order))
        return refuse(QStringLiteral("--order takes side,price type,price,quantity,exchange"));
    for (const TextOption &option : textOptions)
        line.known.*option.value = parser.value(QLatin1String(option.name));
    line.junitFile = parser.value(QStringLiteral("junit"));
    line.isInProcess = parser.isSet(kInProcess);
    line.childToken = parser.value(kChild);
    if (parser.isSet(kOnly)) {
        line.selected = parser.value(kOnly).split(QLatin1Char(','));
        return line;
    }
    const QString problem =
        select(parser.values(QStringLiteral("run")), parser.values(QStringLiteral("with")), line.selected);
    if (!problem.isEmpty())
        return refuse(problem);
    if (parser.isSet(QStringLiteral("list")))
        line.action = List;
    return line;
}

QStringList CommandLine::forChild(const QStringList &arguments, const QString &token, const QStringList &checks)
{
    QStringList childArguments = arguments.mid(1);
    const int end = childArguments.indexOf(QStringLiteral("--"));
    const int place = end < 0 ? childArguments.size() : end;
    childArguments.insert(place, QStringLiteral("--%1=%2").arg(kOnly, checks.join(QLatin1Char(','))));
    childArguments.insert(place, QStringLiteral("--%1=%2").arg(kChild, token));
    return childArguments;
}

void applyGiven(const KnownValues &given, KnownValues &known)
{
    for (const TextOption &option : textOptions) {
        if (!(given.*option.value).isEmpty())
            known.*option.value = given.*option.value;
    }
    if (given.order.orderQty > 0)
        known.order = given.order;
}

QString listOfChecks()
{
    QString list;
    for (const Check &check : allChecks()) {
        list += QLatin1String(check.name);
        const QStringList needed = requirements(check);
        if (!needed.isEmpty())
            list += QStringLiteral(" (%1)").arg(needed.join(QStringLiteral(", ")));
        list += QStringLiteral("\n    %1\n").arg(QString::fromUtf8(check.breaks));
    }
    return list;
}

} // namespace HostCheck
