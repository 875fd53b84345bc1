#include "hostcheck/Check.h"

#include "hostcheck/checks/Tables.h"

#include <QElapsedTimer>
#include <QJsonValue>

#include <exception>

namespace HostCheck {

const char *const kStartCheck = "host.start";
const char *const kEndCheck = "host.end";

const QString kUnknown = QStringLiteral("varnel-host-check-unknown");

namespace {

struct Failure {
    QString expected;
    QString seen;
};

struct Skip {
    QString reason;
};

QString s_remark; // of the check that is running

struct NamedNeed {
    Need need;
    const char *option;
    bool (*isMet)(const KnownValues &known);
};

const NamedNeed needs[] = {
    {Symbol, "--symbol", [](const KnownValues &known) { return !known.symbol.isEmpty(); }},
    {Bond, "--bond", [](const KnownValues &known) { return !known.bond.isEmpty(); }},
    {FundAccount, "--fund-account", [](const KnownValues &known) { return !known.fundAccount.isEmpty(); }},
    {TradingAccount, "--trading-account", [](const KnownValues &known) { return !known.tradingAccount.isEmpty(); }},
    {OrderTerms, "--order", [](const KnownValues &known) { return known.order.orderQty > 0; }},
    {RowPacker, "KnownValues::packRows", [](const KnownValues &known) { return bool(known.packRows); }},
};

void runBody(const Check &check, const KnownValues &known)
{
    QStringList missing;
    for (const NamedNeed &need : needs) {
        if ((check.needs & need.need) && !need.isMet(known))
            missing.append(QLatin1String(need.option));
    }
    if (!missing.isEmpty())
        skip(QStringLiteral("needs %1").arg(missing.join(QStringLiteral(", "))));
    check.run(known);
}

} // namespace

const CheckTable &allChecks()
{
    static const CheckTable all = [] {
        CheckTable joined;
        for (const auto &table :
             {hostStartChecks, constantChecks,  instanceChecks,   viewChecks,      packingChecks,    packingTypeChecks,
              messageChecks,   busChecks,       presenterChecks,  initStateChecks, loginChecks,      accountChecks,
              unknownChecks,   securityChecks,  quoteChecks,      kLineChecks,     permissionChecks, strategyChecks,
              reportChecks,    orderListChecks, orderQueryChecks, tradeChecks,     threadChecks,     hostEndChecks}) {
            const CheckTable checks = table();
            joined.insert(joined.end(), checks.begin(), checks.end());
        }
        return joined;
    }();
    return all;
}

const Check *findCheck(const QString &name)
{
    for (const Check &check : allChecks()) {
        if (name == QLatin1String(check.name))
            return &check;
    }
    return nullptr;
}

QStringList requirements(const Check &check)
{
    QStringList options;
    if (check.part == Part::Login)
        options.append(QStringLiteral("--with login"));
    if (check.part == Part::Orders)
        options.append(QStringLiteral("--with orders"));
    for (const NamedNeed &need : needs) {
        if (check.needs & need.need)
            options.append(QLatin1String(need.option));
    }
    return options;
}

Result runCheck(const Check &check, const KnownValues &known)
{
    Result result;
    result.name = QLatin1String(check.name);
    s_remark.clear();
    QElapsedTimer timer;
    timer.start();
    try {
        runBody(check, known);
        result.seen = s_remark;
    } catch (const Failure &failure) {
        result.outcome = Outcome::Failed;
        result.expected = failure.expected;
        result.seen = failure.seen;
    } catch (const Skip &skipped) {
        result.outcome = Outcome::Skipped;
        result.seen = skipped.reason;
    } catch (const std::exception &exception) {
        result.outcome = Outcome::Failed;
        result.expected = QStringLiteral("no host operation throws");
        result.seen = QStringLiteral("the exception \"%1\"").arg(QString::fromLocal8Bit(exception.what()));
    } catch (...) {
        result.outcome = Outcome::Failed;
        result.expected = QStringLiteral("no host operation throws");
        result.seen = QStringLiteral("an exception");
    }
    result.milliseconds = timer.elapsed();
    return result;
}

void expect(bool holds, const char *expected, const QString &seen)
{
    if (!holds)
        throw Failure{QString::fromUtf8(expected), seen};
}

void skip(const QString &reason)
{
    throw Skip{reason};
}

void remark(const QString &text)
{
    s_remark = text;
}

bool fitsJson(const QVariant &value)
{
    if (value.userType() == qMetaTypeId<QVariantList>()) {
        for (const QVariant &element : value.toList()) {
            if (!fitsJson(element))
                return false;
        }
        return true;
    }
    if (value.userType() == qMetaTypeId<QVariantMap>()) {
        const QVariantMap fields = value.toMap();
        for (const QVariant &field : fields) {
            if (!fitsJson(field))
                return false;
        }
        return true;
    }
    return !value.isValid() || !QJsonValue::fromVariant(value).isNull();
}

void expectFitsJson(const QVariantMap &fields)
{
    for (auto field = fields.cbegin(); field != fields.cend(); ++field)
        expect(fitsJson(*field), "JSON can carry every field",
               QStringLiteral("\"%1\" holds a %2").arg(field.key(), QLatin1String(field->typeName())));
}

double numberIn(const QVariantMap &fields, const QString &field, const char *expected)
{
    const QVariant value = fields.value(field);
    bool isNumber = false;
    const double number = value.toDouble(&isNumber);
    expect(isNumber && qIsFinite(number), expected,
           QStringLiteral("the field \"%1\" holds %2").arg(field, shown(value)));
    return number;
}

} // namespace HostCheck
