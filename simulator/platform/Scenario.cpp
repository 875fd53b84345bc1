#include "platform/Scenario.h"

#include "platform/StrictJson.h"

#include <QFile>
#include <QJsonDocument>

#include <cmath>

namespace sim {

namespace {

constexpr int kMaxTick = 1000;
constexpr int kMaxGenerated = 1000;
constexpr qint64 kMaxCount = 1000000000;
constexpr qint64 kMaxSeed = Q_INT64_C(1) << 53; // JSON's numbers are exact up to here

QDateTime dateTime(JsonNode &node, const QString &key)
{
    QDateTime time = QDateTime::fromString(node.text(key), QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    if (!time.isValid())
        node.fail(key, QStringLiteral("must be a date and time like 2025-03-03 10:00:00"));
    time.setTimeSpec(Qt::UTC);
    return time;
}

QDate date(JsonNode &node, const QString &key)
{
    const QDate date = QDate::fromString(node.text(key), QStringLiteral("yyyy-MM-dd"));
    if (!date.isValid())
        node.fail(key, QStringLiteral("must be a date like 2015-01-05"));
    return date;
}

/// Reads a text that must differ from all in seen.
QString unique(JsonNode &node, const QString &key, QSet<QString> &seen)
{
    const QString text = node.text(key);
    if (seen.contains(text))
        node.fail(key, QStringLiteral("\"%1\" is there twice").arg(text));
    seen.insert(text);
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
        if (!traders.contains(login.account))
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
    if (text == QLatin1String("futures"))
        return FuturesFund;
    node.fail(key, QStringLiteral("must be \"stock\" or \"futures\""));
}

QVector<FundAccount> readFundAccounts(JsonNode &root)
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
        node.finish();
        for (const QString &account : qAsConst(fund.tradingAccounts)) {
            if (seenTradingAccounts.contains(account))
                node.fail(tradingAccounts, QStringLiteral("\"%1\" is there twice").arg(account));
            seenTradingAccounts.insert(account);
        }
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
        if (!known.contains(permission.fundAccount))
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

double readTick(JsonNode &node)
{
    const QString key = QStringLiteral("tick");
    const double tick = node.number(key);
    if (!(tick >= 0.0001 && tick <= kMaxTick) || decimalsOf(tick) < 0)
        node.fail(key, QStringLiteral("must be a positive multiple of 0.0001, at most %1").arg(kMaxTick));
    return tick;
}

double readPrice(JsonNode &node, const Instrument &security)
{
    const QString key = QStringLiteral("price");
    const double price = node.number(key);
    const double ticks = price / security.tick;
    if (!(ticks >= 1 && ticks <= double(kMaxCount)) || std::abs(ticks - std::round(ticks)) > 1e-6)
        node.fail(key, QStringLiteral("must be a positive multiple of the tick, at most %1 ticks").arg(kMaxCount));
    return security.priceOf(std::llround(ticks));
}

SecurityClass readClass(JsonNode &node, const MarketRules &rules)
{
    const QString key = QStringLiteral("subType");
    const QString subType = node.text(key);
    const std::optional<SecurityClass> found = rules.securityClass(subType);
    if (!found)
        node.fail(key, QStringLiteral("\"%1\" is not a known sub-type").arg(subType));
    return *found;
}

/// The accrued interest of 100 face value.
double readInterest(JsonNode &node)
{
    const QString key = QStringLiteral("interest");
    const double interest = node.number(key);
    if (!(interest >= 0 && interest < 100))
        node.fail(key, QStringLiteral("must be at least 0 and below 100"));
    return interest;
}

QVector<Instrument> readSecurities(JsonNode &root, const QDate &start, const MarketRules &rules)
{
    const QString listed = QStringLiteral("listed");
    QVector<Instrument> securities;
    QSet<QString> symbols;
    QSet<QPair<QString, QString>> ids;
    for (JsonNode &node : root.objects(QStringLiteral("securities"))) {
        Instrument security;
        security.symbol = unique(node, QStringLiteral("symbol"), symbols);
        security.securityId = node.text(QStringLiteral("securityId"));
        security.exchange = node.text(QStringLiteral("exchange"));
        security.name = node.text(QStringLiteral("name"));
        security.spellCode = node.text(QStringLiteral("spellCode"));
        readClass(node, rules).applyTo(security);
        security.tick = readTick(node);
        security.decimals = decimalsOf(security.tick);
        security.price = readPrice(node, security);
        if (security.kind == SecurityKind::Bond)
            security.interest = readInterest(node);
        security.multiplier = double(node.wholeNumber(QStringLiteral("multiplier"), 1, kMaxCount));
        security.dailyVolume = node.wholeNumber(QStringLiteral("dailyVolume"), 0, kMaxCount);
        security.listed = date(node, listed);
        node.finish();
        if (security.listed >= start)
            node.fail(listed, QStringLiteral("must be before the scenario starts"));
        if (ids.contains({security.securityId, security.exchange}))
            node.fail(QStringLiteral("securityId"), QStringLiteral("\"%1\" is there twice").arg(security.securityId));
        ids.insert({security.securityId, security.exchange});
        securities.append(security);
    }
    return securities;
}

Scenario readRoot(JsonNode root)
{
    Scenario scenario;
    scenario.name = root.text(QStringLiteral("name"));
    scenario.seed = quint64(root.wholeNumber(QStringLiteral("seed"), 0, kMaxSeed));
    scenario.start = dateTime(root, QStringLiteral("start"));
    scenario.station = root.text(QStringLiteral("station"));
    scenario.traders = readTraders(root);
    scenario.logins = readLogins(root, scenario.traders);
    scenario.fundAccounts = readFundAccounts(root);
    scenario.algoPermissions = readAlgoPermissions(root, scenario.fundAccounts);
    scenario.securities = readSecurities(root, scenario.start.date(), scenario.rules);
    scenario.generatedSecurities = int(root.wholeNumber(QStringLiteral("generatedSecurities"), 0, kMaxGenerated));
    root.finish();
    return scenario;
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
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(text, &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        error = QStringLiteral("%1: not JSON: %2 at byte %3")
                    .arg(fileName, parseError.errorString())
                    .arg(parseError.offset);
        return false;
    }
    try {
        scenario = readRoot(JsonNode(QString(), document.isObject() ? QJsonValue(document.object()) : QJsonValue()));
        return true;
    } catch (const JsonError &problem) {
        error = QStringLiteral("%1: %2").arg(fileName, problem.message());
        return false;
    }
}

QString Scenario::defaultFile()
{
    return QStringLiteral(":/scenarios/default.json");
}

} // namespace sim
