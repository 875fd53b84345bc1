#include "hostcheck/checks/Tables.h"

#include "CommonQuotaHandler.h"
#include "QvBondDataMgr.h"
#include "SearchConstants.h"
#include "Tessar_Fields.h"
#include "VarnelBusiUtils.h"
#include "VarnelBusinessDataInterface.h"
#include "VarnelTradeLogic.h"

#include <cmath>

namespace HostCheck {

namespace {

using Host = VarnelBusinessDataInterface;
using namespace Tessar_Fields;

void details(const KnownValues &known)
{
    const QVariantMap fields = Host::GetSecurityDetailsBySymbol(known.symbol);
    for (const QString &field : {Security::securityID, UserAccount::securityExchange, Security::chineseName})
        expect(!fields.value(field).toString().isEmpty(), "a security's details have its code, exchange and name",
               QStringLiteral("nothing under \"%1\"").arg(field));
}

void detailsNameTheSymbol(const KnownValues &known)
{
    const QVariant symbol = Host::GetSecurityDetailsBySymbol(known.symbol).value(Security::symbol);
    expect(symbol.toString() == known.symbol, "a security's details have its symbol under Security::symbol",
           shown(symbol));
}

void codeLeadsToSymbol(const KnownValues &known)
{
    const QVariantMap fields = Host::GetSecurityDetailsBySymbol(known.symbol);
    const QString code = fields.value(Security::securityID).toString();
    const QString exchange = fields.value(UserAccount::securityExchange).toString();
    const QString symbol = Host::GetSymbolBySecurityIDAndExchange(code, exchange);
    expect(symbol == known.symbol, "the code and the exchange of a security's details lead back to its symbol",
           QStringLiteral("\"%1\" at \"%2\" leads to \"%3\"").arg(code, exchange, symbol));
}

int decimalsOf(const KnownValues &known)
{
    return Host::GetPricePrecisionBySymbol(known.symbol, QString());
}

double unitOf(const KnownValues &known)
{
    return Host::GetPriceUnitBySymbol(known.symbol, 0.0, QString());
}

bool isPrecision(int decimals)
{
    return decimals >= 0 && decimals <= 10;
}

void precision(const KnownValues &known)
{
    expect(isPrecision(decimalsOf(known)), "the price of a security has 0 to 10 decimals",
           QString::number(decimalsOf(known)));
}

void priceUnit(const KnownValues &known)
{
    expect(unitOf(known) > 0 && qIsFinite(unitOf(known)), "the price unit of a security is above zero",
           QString::number(unitOf(known)));
}

void unitFitsPrecision(const KnownValues &known)
{
    if (!(unitOf(known) > 0) || !isPrecision(decimalsOf(known)))
        skip(QStringLiteral("there is no unit or no precision: see securities.price-unit and securities.precision"));
    const double steps = unitOf(known) * std::pow(10, decimalsOf(known));
    expect(std::abs(steps - std::round(steps)) < 1e-6 && std::round(steps) >= 1,
           "the price unit can be written with the decimals of the price",
           QStringLiteral("%1 with %2 decimals").arg(unitOf(known)).arg(decimalsOf(known)));
}

void orderQuantities(const KnownValues &known)
{
    const qint64 least = Host::GetMinQtyPerOrderBySymbol(known.symbol);
    const qint64 most = Host::GetMaxQtyPerOrderBySymbol(known.symbol, {});
    constexpr qint64 kMostExact = qint64(1) << 53; // pages read it as a number
    expect(least > 0 && least <= most && most <= kMostExact,
           "an order's least quantity is above zero and not above the greatest",
           QStringLiteral("from %1 to %2").arg(least).arg(most));
}

void quantitySteps(const KnownValues &known)
{
    const int step = Host::GetQtyStepBySymbol(known.symbol);
    const int shownStep = present(VarnelTradeLogic::instance()).getDispQtyStepBySymbol(known.symbol);
    expect(step > 0 && shownStep > 0, "the steps of a security's quantity are above zero",
           QStringLiteral("%1, and %2 for display").arg(step).arg(shownStep));
}

void type(const KnownValues &known)
{
    const QString type = Host::GetSecurityTypeBySymbol(known.symbol);
    expect(!type.isEmpty(), "a security has a type", shown(type));
}

/// The search entries of the known symbol's class, or else of whatever an empty class selects, in parts.
QList<QStringList> searchEntries(const KnownValues &known)
{
    const auto ask = [](const SymbolListType &wanted) { return VarnelBusiUtils::GetInputSymbolList({wanted}); };
    QStringList entries = ask({Host::GetSecurityTypeBySymbol(known.symbol), {}, {}});
    if (entries.isEmpty())
        entries = ask({});
    if (entries.isEmpty())
        skip(QStringLiteral("the host lists no security without subtypes and boards"));
    if (Constants::SymbolSearch_Split.isEmpty())
        skip(QStringLiteral("there is no separator: see constants.present"));
    QList<QStringList> parts;
    for (const QString &entry : qAsConst(entries))
        parts.append(entry.split(Constants::SymbolSearch_Split, Qt::KeepEmptyParts, Qt::CaseSensitive));
    return parts;
}

void searchEntriesHaveThreeParts(const KnownValues &known)
{
    const auto entries = searchEntries(known);
    for (const QStringList &parts : entries)
        expect(parts.size() >= 3 && !parts.first().isEmpty(),
               "a search entry is symbol, name and spelling code, joined by the separator",
               parts.join(Constants::SymbolSearch_Split));
    remark(QStringLiteral("%1 entries").arg(entries.size()));
}

void searchedSymbolsExist(const KnownValues &known)
{
    constexpr int kAtEachEnd = 20; // of some fifty thousand
    const auto entries = searchEntries(known);
    for (const auto &some : {entries.mid(0, kAtEachEnd), entries.mid(std::max(0, entries.size() - kAtEachEnd))}) {
        for (const QStringList &parts : some)
            expect(!Host::GetSecurityDetailsBySymbol(parts.first()).isEmpty(),
                   "the symbol of a search entry has details", QStringLiteral("\"%1\" has none").arg(parts.first()));
    }
}

void bondHasBaseInfo(const KnownValues &known)
{
    stuBaseInfo info;
    const QString result = present(QvBondDataMgr::instance()).GetSingelBondBaseInfo(known.bond, info);
    expect(result == QLatin1String("0") && qIsFinite(info.interest),
           "for a bond the result is \"0\" and its interest is a number",
           QStringLiteral("\"%1\" and %2").arg(result).arg(info.interest));
}

} // namespace

CheckTable securityChecks()
{
    CheckTable checks{
        {"securities.details", "Pages show securities without code, exchange or name.", details},
        {"securities.details-name-the-symbol", "Pages cannot tell which security the details are of.",
         detailsNameTheSymbol},
        {"securities.code-leads-to-symbol", "Positions show no quotes.", codeLeadsToSymbol},
        {"securities.precision", "Pages show prices with the wrong number of decimals.", precision},
        {"securities.price-unit", "Pages cannot step a price up and down.", priceUnit},
        {"securities.unit-fits-precision", "Pages round prices to ones that cannot be ordered.", unitFitsPrecision},
        {"securities.order-quantities", "Pages refuse every quantity.", orderQuantities},
        {"securities.quantity-steps", "Pages divide by zero or cannot step a quantity.", quantitySteps},
        {"securities.type", "Pages cannot tell shares from bonds and futures.", type},
        {"securities.search-entries", "Securities are missing in the pages' search.", searchEntriesHaveThreeParts},
        {"securities.searched-symbols-exist", "Pages offer securities without details.", searchedSymbolsExist},
    };
    for (Check &check : checks)
        check.needs = Symbol;
    checks.push_back(
        {"securities.bond-has-base-info", "Bonds show no accrued interest.", bondHasBaseInfo, Part::Basic, Bond});
    return checks;
}

} // namespace HostCheck
