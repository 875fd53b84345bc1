#include "platform/Scenario.h"

#include "exchange/Listing.h"
#include "platform/ScenarioAccounts.h"
#include "platform/ScenarioDays.h"
#include "platform/ScenarioRules.h"
#include "platform/StrictJson.h"

#include <QFile>

#include <cmath>

// Resources of a static library are linked only when they are named. Qt requires this outside of namespaces.
static void initResources()
{
    Q_INIT_RESOURCE(scenarios);
}

namespace sim {

namespace {

constexpr int kMaxTick = 1000;
constexpr int kMaxOrders = 10000; // of one fund account at the opening
constexpr int kMaxPositions = 1000;
constexpr int kMaxBusDelay = 10000;
constexpr int kMaxOrderDelay = 600000;
constexpr qint64 kMaxCount = 1000000000;
constexpr qint64 kMaxSeed = Q_INT64_C(1) << 53; // JSON's numbers are exact up to here

// A value that could not be read is empty, invalid or nothing. Its mistake is noted, and no other one follows from it.

/// Notes a mistake when the text is one of those in seen, and adds it to them.
void requireNew(const JsonNode &node, const QString &key, const QString &text, QSet<QString> &seen)
{
    if (seen.contains(text))
        node.fail(key, QStringLiteral("\"%1\" is there twice").arg(text));
    if (!text.isEmpty())
        seen.insert(text);
}

/// Reads a text that must differ from all in seen.
QString unique(JsonNode &node, const QString &key, QSet<QString> &seen)
{
    const QString text = node.text(key);
    requireNew(node, key, text, seen);
    return text;
}

QMap<QString, QString> readTraders(JsonNode &root)
{
    QMap<QString, QString> traders;
    QSet<QString> ids;
    for (JsonNode &node : root.objects(QStringLiteral("traders"))) {
        const QString id = unique(node, QStringLiteral("id"), ids);
        traders.insert(id, node.text(QStringLiteral("name")));
        node.finish();
    }
    return traders;
}

QVector<Login> readLogins(JsonNode &root, const QMap<QString, QString> &traders)
{
    const QString account = QStringLiteral("account");
    QVector<Login> logins;
    QSet<QString> accounts;
    for (JsonNode &node : root.objects(QStringLiteral("logins"))) {
        Login login;
        login.account = unique(node, account, accounts);
        login.token = node.text(QStringLiteral("token"));
        node.finish();
        if (!login.account.isEmpty() && !traders.isEmpty() && !traders.contains(login.account))
            node.fail(account, QStringLiteral("\"%1\" is not one of the traders").arg(login.account));
        // The account names the folder of the login's settings file.
        if (login.account.contains(QLatin1Char('/')) || login.account.contains(QLatin1Char('\\')) ||
            login.account.startsWith(QLatin1Char('.')))
            node.fail(account, QStringLiteral("\"%1\" cannot name a folder").arg(login.account));
        logins.append(login);
    }
    return logins;
}

FundProperty readProperty(JsonNode &node)
{
    const QString key = QStringLiteral("property");
    const QString text = node.text(key);
    if (text == QLatin1String("stock"))
        return StockFund;
    if (text != QLatin1String("futures") && !text.isEmpty())
        node.fail(key, QStringLiteral("must be \"stock\" or \"futures\""));
    return FuturesFund;
}

QVector<FundAccount> readFundAccounts(JsonNode &root, const QVector<Instrument> &securities,
                                      QMap<QString, GivenOpening> &openings)
{
    const QString tradingAccounts = QStringLiteral("tradingAccounts");
    QVector<FundAccount> fundAccounts;
    QSet<QString> accounts;
    QSet<QString> seenTradingAccounts;
    for (JsonNode &node : root.objects(QStringLiteral("fundAccounts"))) {
        FundAccount fund;
        fund.account = unique(node, QStringLiteral("account"), accounts);
        fund.name = node.text(QStringLiteral("name"));
        fund.property = readProperty(node);
        fund.tradingAccounts = node.texts(tradingAccounts);
        openings.insert(fund.account, readGivenOpening(node, fund.property == FuturesFund, securities));
        node.finish();
        for (const QString &account : qAsConst(fund.tradingAccounts))
            requireNew(node, tradingAccounts, account, seenTradingAccounts);
        fundAccounts.append(fund);
    }
    return fundAccounts;
}

QVector<AlgoPermission> readAlgoPermissions(JsonNode &root, const QVector<FundAccount> &fundAccounts)
{
    const QString fundAccount = QStringLiteral("fundAccount");
    QSet<QString> known;
    for (const FundAccount &fund : fundAccounts)
        known.insert(fund.account);
    QVector<AlgoPermission> permissions;
    QSet<QPair<QString, QString>> seen;
    for (JsonNode &node : root.objectsIfAny(QStringLiteral("algoPermissions"))) {
        AlgoPermission permission;
        permission.fundAccount = node.text(fundAccount);
        permission.supportType = node.text(QStringLiteral("supportType"));
        node.finish();
        if (permission.fundAccount.isEmpty() || permission.supportType.isEmpty())
            continue;
        if (!known.isEmpty() && !known.contains(permission.fundAccount))
            node.fail(fundAccount,
                      QStringLiteral("\"%1\" is not one of the fund accounts").arg(permission.fundAccount));
        if (seen.contains({permission.fundAccount, permission.supportType}))
            node.fail(fundAccount,
                      QStringLiteral("\"%1\" has \"%2\" twice").arg(permission.fundAccount, permission.supportType));
        seen.insert({permission.fundAccount, permission.supportType});
        permissions.append(permission);
    }
    return permissions;
}

/// That of the class where the security has none of its own. 0 after a mistake.
double readTick(JsonNode &node, const std::optional<SecurityClass> &securityClass)
{
    const QString key = QStringLiteral("tick");
    if (!node.has(key) && securityClass && securityClass->tick > 0)
        return securityClass->tick;
    const std::optional<double> tick = node.number(key);
    if (!tick)
        return 0;
    if (*tick >= 0.0001 && *tick <= kMaxTick && decimalsOf(*tick) >= 0)
        return *tick;
    node.fail(key, QStringLiteral("must be a positive multiple of 0.0001, at most %1").arg(kMaxTick));
    return 0;
}

/// 0 after a mistake.
double readPrice(JsonNode &node, const Instrument &security)
{
    const QString key = QStringLiteral("price");
    const std::optional<double> price = node.number(key);
    if (!price || security.tick <= 0)
        return 0;
    const double ticks = *price / security.tick;
    if (ticks >= 1 && ticks <= double(kMaxCount) && std::abs(ticks - std::round(ticks)) <= 1e-6)
        return security.priceOf(std::llround(ticks));
    node.fail(key, QStringLiteral("must be a positive multiple of the tick, at most %1 ticks").arg(kMaxCount));
    return 0;
}

/// Nothing after a mistake.
std::optional<SecurityClass> readClass(JsonNode &node, const MarketRules &rules)
{
    const QString key = QStringLiteral("subType");
    const QString subType = node.text(key);
    const std::optional<SecurityClass> found = rules.securityClass(subType);
    if (!found && !subType.isEmpty())
        node.fail(key, QStringLiteral("\"%1\" is not a known sub-type").arg(subType));
    return found;
}

/// The accrued interest of 100 face value.
double readInterest(JsonNode &node)
{
    const QString key = QStringLiteral("interest");
    const std::optional<double> interest = node.number(key);
    if (interest && !(*interest >= 0 && *interest < 100))
        node.fail(key, QStringLiteral("must be at least 0 and below 100"));
    return interest.value_or(0);
}

Instrument readSecurity(JsonNode &node, const MarketRules &rules)
{
    const QString interest = QStringLiteral("interest");
    Instrument security;
    security.symbol = node.text(QStringLiteral("symbol"));
    security.securityId = node.text(QStringLiteral("securityId"));
    security.exchange = node.text(QStringLiteral("exchange"));
    security.name = node.text(QStringLiteral("name"));
    security.spellCode = node.text(QStringLiteral("spellCode"));
    const std::optional<SecurityClass> securityClass = readClass(node, rules);
    if (securityClass)
        securityClass->applyTo(security);
    security.tick = readTick(node, securityClass);
    security.decimals = decimalsOf(security.tick);
    security.price = readPrice(node, security);
    // Whether a security of an unknown sub-type has interest cannot be told.
    if (securityClass ? security.kind == SecurityKind::Bond : node.has(interest))
        security.interest = readInterest(node);
    const QString margin = QStringLiteral("margin");
    if (node.has(margin) && (!securityClass || security.kind == SecurityKind::Future))
        security.marginRate = node.number(margin, 0, 1).value_or(security.marginRate);
    security.multiplier = double(node.wholeNumber(QStringLiteral("multiplier"), 1, kMaxCount).value_or(1));
    security.dailyVolume = node.wholeNumber(QStringLiteral("dailyVolume"), 0, kMaxCount).value_or(0);
    security.listed = readDate(node, QStringLiteral("listed"));
    node.finish();
    return security;
}

QVector<Instrument> readSecurities(JsonNode &root, const QDate &start, const MarketRules &rules)
{
    QVector<Instrument> securities;
    QSet<QString> symbols;
    QSet<QPair<QString, QString>> ids;
    for (JsonNode &node : root.objects(QStringLiteral("securities"))) {
        const Instrument security = readSecurity(node, rules);
        requireNew(node, QStringLiteral("symbol"), security.symbol, symbols);
        if (security.symbol.contains(QLatin1Char(',')))
            node.fail(QStringLiteral("symbol"), QStringLiteral("must have no comma: pages write it between symbols"));
        if (start.isValid() && security.listed.isValid() && security.listed >= start)
            node.fail(QStringLiteral("listed"), QStringLiteral("must be before the scenario starts"));
        const QPair<QString, QString> id{security.securityId, security.exchange};
        if (!security.securityId.isEmpty() && ids.contains(id))
            node.fail(QStringLiteral("securityId"), QStringLiteral("\"%1\" is there twice").arg(security.securityId));
        ids.insert(id);
        securities.append(security);
    }
    return securities;
}

/// The rest keeps its default.
OpeningTerms readOpening(JsonNode &root)
{
    const QString orders = QStringLiteral("generatedOrders");
    const QString positions = QStringLiteral("generatedPositions");
    static const QMap<QString, SecurityKind> kinds{{QStringLiteral("shares"), SecurityKind::Share},
                                                   {QStringLiteral("funds"), SecurityKind::Fund},
                                                   {QStringLiteral("bonds"), SecurityKind::Bond},
                                                   {QStringLiteral("futures"), SecurityKind::Future}};
    OpeningTerms terms;
    if (root.has(orders))
        terms.orders = int(root.wholeNumber(orders, 0, kMaxOrders).value_or(0));
    if (!root.has(positions))
        return terms;
    if (std::optional<JsonNode> node = root.object(positions)) {
        for (auto kind = kinds.begin(); kind != kinds.end(); ++kind) {
            if (node->has(kind.key()))
                terms.positions[kind.value()] = int(node->wholeNumber(kind.key(), 0, kMaxPositions).value_or(0));
        }
        node->finish();
    }
    return terms;
}

/// The rest keeps its default.
OrderDelays readOrderDelays(JsonNode &root)
{
    const QString key = QStringLiteral("orderDelays");
    const QString shortest = QStringLiteral("shortest");
    const QString longest = QStringLiteral("longest");
    OrderDelays delays;
    std::optional<JsonNode> node;
    if (root.has(key))
        node = root.object(key);
    if (!node)
        return delays;
    const QPair<QString, Delay *> members[] = {{QStringLiteral("send"), &delays.send},
                                               {QStringLiteral("accept"), &delays.accept},
                                               {QStringLiteral("cancel"), &delays.cancel}};
    for (const auto &[name, delay] : members) {
        std::optional<JsonNode> range;
        if (node->has(name))
            range = node->object(name);
        if (!range)
            continue;
        delay->shortest = int(range->wholeNumber(shortest, 0, kMaxOrderDelay).value_or(0));
        delay->longest = int(range->wholeNumber(longest, 0, kMaxOrderDelay).value_or(kMaxOrderDelay));
        range->finish();
        if (delay->shortest > delay->longest)
            range->fail(shortest, QStringLiteral("must not be more than the longest"));
    }
    node->finish();
    return delays;
}

/// The symbols of all securities, also of those that are made up: which these are does not depend on the seed, which
/// the command line may change.
QSet<QString> symbolsOf(const Scenario &scenario)
{
    QSet<QString> symbols;
    for (const Instrument &security : listing(scenario.securities, scenario.generatedSecurities, scenario.seed,
                                              scenario.start.date(), scenario.rules))
        symbols.insert(security.symbol);
    return symbols;
}

Scenario readRoot(JsonNode root)
{
    Scenario scenario;
    scenario.name = root.text(QStringLiteral("name"));
    scenario.seed = quint64(root.wholeNumber(QStringLiteral("seed"), 0, kMaxSeed).value_or(0));
    scenario.start = readDateTime(root, QStringLiteral("start"));
    scenario.station = root.text(QStringLiteral("station"));
    scenario.traders = readTraders(root);
    scenario.logins = readLogins(root, scenario.traders);
    scenario.rules = readRules(root);
    scenario.rules.calendar = TradingCalendar(readHolidays(root));
    scenario.securities = readSecurities(root, scenario.start.date(), scenario.rules);
    scenario.generatedSecurities =
        int(root.wholeNumber(QStringLiteral("generatedSecurities"), 0, kMostGenerated).value_or(0));
    QSet<QString> symbols; // of a long list only where there are halts
    scenario.halts = readHalts(root, [&](const QString &symbol) {
        if (!scenario.start.isValid())
            return true; // nobody can tell
        if (symbols.isEmpty())
            symbols = symbolsOf(scenario);
        return symbols.contains(symbol);
    });
    scenario.opening = readOpening(root);
    scenario.fundAccounts = readFundAccounts(root, scenario.securities, scenario.opening.given);
    scenario.algoPermissions = readAlgoPermissions(root, scenario.fundAccounts);
    scenario.orderDelays = readOrderDelays(root);
    const QString busDelay = QStringLiteral("busDelay");
    if (root.has(busDelay))
        scenario.busDelay = int(root.wholeNumber(busDelay, 0, kMaxBusDelay).value_or(0));
    scenario.faults = readFaults(root);
    scenario.timeline = readTimeline(root, scenario.start);
    scenario.orderFlow = readOrderFlow(root, scenario.fundAccounts);
    if (root.has(QStringLiteral("$schema")))
        root.text(QStringLiteral("$schema")); // for editors
    root.finish();
    return scenario;
}

QString mistakeAt(const QString &fileName, const QByteArray &text, int offset, const QString &problem)
{
    return QStringLiteral("%1:%2: %3").arg(fileName, placeOf(text, offset), problem);
}

} // namespace

bool Scenario::read(const QString &fileName, Scenario &scenario, QString &error)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        error = QStringLiteral("%1: %2").arg(fileName, file.errorString());
        return false;
    }
    return parse(file.readAll(), fileName, scenario, error);
}

bool Scenario::parse(const QByteArray &text, const QString &fileName, Scenario &scenario, QString &error)
{
    JsonValue root;
    const JsonSyntaxError syntaxError = parseJson(text, root);
    if (!syntaxError.problem.isEmpty()) {
        error = mistakeAt(fileName, text, syntaxError.offset, QStringLiteral("not JSON: ") + syntaxError.problem);
        return false;
    }
    if (root.type != JsonValue::Object) {
        error = mistakeAt(fileName, text, root.offset, QStringLiteral("must be an object"));
        return false;
    }
    JsonMistakes mistakes;
    scenario = readRoot(JsonNode(mistakes, QString(), root));
    error = mistakes.lines(fileName, text).join(QLatin1Char('\n'));
    return error.isEmpty();
}

QStringList Scenario::builtInNames()
{
    return {QStringLiteral("default"), QStringLiteral("quiet"), QStringLiteral("storm"),
            QStringLiteral("bad-day"), QStringLiteral("large"), QStringLiteral("week")};
}

QString Scenario::builtIn(const QString &name)
{
    initResources();
    return builtInNames().contains(name) ? QStringLiteral(":/scenarios/%1.json").arg(name) : QString();
}

} // namespace sim
