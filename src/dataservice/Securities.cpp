#include "dataservice/DataProcess.h"

#include "dataservice/BondInterest.h"
#include "dataservice/Filter.h"

#include "CommonQuotaHandler.h"
#include "SearchConstants.h"
#include "Tessar_Fields.h"
#include "VarnelBusiUtils.h"
#include "VarnelBusinessDataInterface.h"
#include "VarnelTradeLogic.h"

using namespace WebConstants;

namespace {

/// The security classes of a filter. Elements that are no objects, or lack a key, become empty classes: the host
/// decides what those select.
QList<SymbolListType> securityClasses(const QJsonDocument &filter)
{
    QList<SymbolListType> classes;
    const QVariantList elements = filter.toVariant().toMap().value(Key::symbolFilter).toList();
    for (const QVariant &element : elements) {
        const QVariantMap wanted = element.toMap();
        classes.append({wanted.value(Key::securityType).toString(), wanted.value(Key::securitySubType).toStringList(),
                        wanted.value(Key::securityPost).toStringList()});
    }
    return classes;
}

struct SearchEntry {
    QString symbol;
    QString displayName; ///< may contain the separator itself
    QString spellName;
};

/// The host's search entries in its order; those with fewer than three parts are left out.
QList<SearchEntry> searchEntries(const QList<SymbolListType> &classes)
{
    QList<SearchEntry> entries;
    const QStringList texts = VarnelBusiUtils::GetInputSymbolList(classes);
    for (const QString &text : texts) {
        QStringList parts = text.split(Constants::SymbolSearch_Split, Qt::KeepEmptyParts, Qt::CaseSensitive);
        if (parts.size() < 3)
            continue;
        const QString spellName = parts.takeLast();
        const QString symbol = parts.takeFirst();
        entries.append({symbol, parts.join(Constants::SymbolSearch_Split), spellName});
    }
    return entries;
}

QString wholeNumberText(qint64 number)
{
    return QString::number(double(number), 'f', 0);
}

/// shownSymbol is what the record says; every host call is made with symbol.
QVariantMap detailRecord(const QString &shownSymbol, const QString &symbol, const QVariantMap &details)
{
    using namespace Tessar_Fields;
    using Host = VarnelBusinessDataInterface;
    return QVariantMap{
        {Key::symbol, shownSymbol},
        {Key::securityId, details.value(Security::securityID).toString()},
        {Key::exchange, details.value(UserAccount::securityExchange).toString()},
        {Key::displayName, details.value(Security::chineseName).toString()},
        {Key::spellName, details.value(Security::spellCode).toString()},
        {Key::qtyUnit, CommonQuotaHandler::instance()->GetQtyUnit(symbol)},
        {Key::precision, Host::GetPricePrecisionBySymbol(symbol, QString())},
        {Key::priceUnit, Host::GetPriceUnitBySymbol(symbol, 0.0, QString())},
        // Meant: the display step is called step, and the step itself precision.
        {Key::qtyStep, VarnelTradeLogic::instance()->getDispQtyStepBySymbol(symbol)},
        {Key::qtyPrecision, Host::GetQtyStepBySymbol(symbol)},
        // Meant: texts, while the other quantities are numbers.
        {Key::minQty, wholeNumberText(Host::GetMinQtyPerOrderBySymbol(symbol))},
        {Key::maxQty, wholeNumberText(Host::GetMaxQtyPerOrderBySymbol(symbol, QVariantMap()))},
        {Key::securityType, Host::GetSecurityTypeBySymbol(symbol)},
        {Key::securitySubType, Host::GetSecuritySubTypeBySymbol(symbol)},
        {Key::priceLimitType, details.value(Security::priceLimitType).toBool()},
        {Key::stockInterest, bondInterest(symbol, details)},
    };
}

/// One record for each search entry that the filter selects. Each is written as soon as it is made: all securities
/// together are some fifty thousand.
template <typename MakeRecord>
void writeRecords(JsonWriter &json, const QJsonDocument &filter, MakeRecord makeRecord)
{
    json.array(searchEntries(securityClasses(filter)),
               [&](const SearchEntry &entry) { json.value(QVariant(makeRecord(entry))); });
}

} // namespace

QString DataProcess::processSymbolList(const QString &uuid, const QVariant &filter)
{
    const auto shortRecord = [](const SearchEntry &entry) {
        return QVariantMap{
            {Key::symbol, entry.symbol}, {Key::displayName, entry.displayName}, {Key::spellName, entry.spellName}};
    };
    return filteredReply(
        uuid, filter, VARNEL_OPERATION(DataProcess, processSymbolList),
        [&](const QJsonDocument &document, JsonWriter &json) { writeRecords(json, document, shortRecord); });
}

QString DataProcess::processSymbolListWithDetail(const QString &uuid, const QVariant &filter)
{
    // Meant: only the symbol stays from the search entry, the names are those of the details.
    const auto record = [](const SearchEntry &entry) {
        return detailRecord(entry.symbol, entry.symbol,
                            VarnelBusinessDataInterface::GetSecurityDetailsBySymbol(entry.symbol));
    };
    return filteredReply(
        uuid, filter, VARNEL_OPERATION(DataProcess, processSymbolListWithDetail),
        [&](const QJsonDocument &document, JsonWriter &json) { writeRecords(json, document, record); });
}

QString DataProcess::processSymbolDetail(const QString &uuid, const QString &symbols)
{
    const QStringList parts = symbols.split(QLatin1Char(','), Qt::KeepEmptyParts, Qt::CaseSensitive);
    return Reply::text(uuid, [&](JsonWriter &json) {
        json.array(parts, [&](const QString &symbol) {
            const QVariantMap details = VarnelBusinessDataInterface::GetSecurityDetailsBySymbol(symbol);
            json.value(detailRecord(details.value(Tessar_Fields::Security::symbol).toString(), symbol, details));
        });
    });
}
