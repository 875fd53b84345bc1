#include "Bus.h"
#include "CommonQuotaHandler.h"
#include "Fault.h"
#include "NotForJson.h"
#include "QvBondDataMgr.h"
#include "SearchConstants.h"
#include "Tessar_Fields.h"
#include "Tessar_Values.h"
#include "VarnelBusiUtils.h"
#include "VarnelBusinessDataInterface.h"
#include "World.h"

#include <QSet>

using Host = VarnelBusinessDataInterface;
using namespace Tessar_Fields;

QString Host::GetSymbolBySecurityIDAndExchange(const QString &securityId, const QString &exchange)
{
    const QString symbol = securityId + QLatin1Char('.') + exchange;
    if (isSymbol(symbol))
        return hasFault("CodeLeadsElsewhere") ? kBond : symbol;
    return hasFault("UnknownCodeHasSymbol") ? kShare : QString();
}

QVariantMap Host::GetSecurityDetailsBySymbol(const QString &symbol)
{
    if ((!isSymbol(symbol) && !hasFault("UnknownSymbolHasDetails")) ||
        isLostOnThisThread("SecuritiesLostOnOtherThreads"))
        return {};
    QVariantMap details{{Security::securityID, symbol.section(QLatin1Char('.'), 0, 0)},
                        {UserAccount::securityExchange, symbol.section(QLatin1Char('.'), 1)},
                        {Security::chineseName, hasFault("SecurityWithoutName") ? QString() : QStringLiteral("东岚")},
                        {MDCFieldDefine::mdcSecurityType, GetSecurityTypeBySymbol(symbol)}};
    if (!hasFault("DetailsWithoutSymbol"))
        details.insert(Security::symbol, symbol);
    return details;
}

int Host::GetPricePrecisionBySymbol(const QString &symbol, const QString &)
{
    if (!isSymbol(symbol))
        return hasFault("UnknownSymbolHasNumbers") ? 2 : 0;
    if (hasFault("PrecisionTooSmall"))
        return 0;
    return hasFault("PrecisionNegative") ? -1 : 2;
}

double Host::GetPriceUnitBySymbol(const QString &symbol, double defaultUnit, const QString &)
{
    if (!isSymbol(symbol) && !hasFault("UnknownSymbolHasPriceUnit"))
        return defaultUnit;
    return hasFault("PriceUnitZero") ? 0 : 0.01;
}

int Host::GetQtyStepBySymbol(const QString &symbol)
{
    return isSymbol(symbol) && !hasFault("QtyStepZero") ? 100 : 0;
}

qint64 Host::GetMinQtyPerOrderBySymbol(const QString &symbol)
{
    return isSymbol(symbol) ? 100 : 0;
}

qint64 Host::GetMaxQtyPerOrderBySymbol(const QString &symbol, const QVariantMap &)
{
    return isSymbol(symbol) ? (hasFault("MostBelowLeast") ? 1 : 1000000) : 0;
}

QString Host::GetSecurityTypeBySymbol(const QString &symbol)
{
    if (symbol == kBond)
        return Tessar_Values::MdcSecurityType::BondType;
    if (symbol == kShare)
        return hasFault("NoSecurityType") ? QString() : QStringLiteral("share");
    return hasFault("UnknownSymbolHasType") ? QStringLiteral("share") : QString();
}

QString Host::GetSecuritySubTypeBySymbol(const QString &)
{
    return {};
}

QStringList VarnelBusiUtils::GetInputSymbolList(const QList<SymbolListType> &)
{
    QStringList symbols{kShare, kBond};
    if (hasFault("SearchListsUnknownSymbol"))
        symbols.append(QStringLiteral("999999.X"));
    QStringList entries;
    for (const QString &symbol : qAsConst(symbols)) {
        QStringList parts{symbol, QStringLiteral("东岚"), QStringLiteral("DL")};
        if (hasFault("SearchEntryOfTwoParts"))
            parts.removeLast();
        entries.append(parts.join(Constants::SymbolSearch_Split));
    }
    return entries;
}

QvBondDataMgr *QvBondDataMgr::instance()
{
    static QvBondDataMgr manager;
    return hasFault("NoInstance") ? nullptr : &manager;
}

QString QvBondDataMgr::GetSingelBondBaseInfo(const QString &symbol, stuBaseInfo &info)
{
    const bool isKnown = symbol == kBond ? !hasFault("BondWithoutInfo") : hasFault("UnknownBondHasInterest");
    if (!isKnown)
        return QStringLiteral("-1");
    info.interest = 1.25;
    return QStringLiteral("0");
}

CommonQuotaHandler::CommonQuotaHandler(QObject *parent) : QObject(parent) {}

CommonQuotaHandler::~CommonQuotaHandler() = default;

namespace {

/// Sends one quote with each subscription, on the thread of the bus.
class Quotes : public CommonQuotaHandler {
public:
    int SubscribeQuota(const QStringList &symbols, bool, int) override
    {
        for (const QString &symbol : symbols) {
            if (!isSymbol(symbol) && hasFault("UnknownSymbolEndsSubscription"))
                return -1;
        }
        for (const QString &symbol : symbols) {
            const bool isNew = !m_streamed.contains(symbol);
            m_streamed.insert(symbol);
            if (!isNew && hasFault("SecondSubscriptionEndsStream")) {
                m_streamed.remove(symbol);
                continue;
            }
            if (isSymbol(symbol) && !hasFault("NoTicks"))
                Bus::instance().post([this, symbol] { tick(symbol); });
        }
        return 0;
    }

    QMap<QString, QVariant> GetQuotaSnapshot(const QString &symbol, int) override
    {
        const bool isKnown = isSymbol(symbol) ? !hasFault("NoSnapshot") : hasFault("UnknownSymbolHasQuote");
        if (!isKnown || isLostOnThisThread("QuotesLostOnOtherThreads"))
            return {};
        QVariantMap quote{{QStringLiteral("last"), 18.36}};
        if (!hasFault("SnapshotWithoutSymbol"))
            quote.insert(Security::symbol, symbol);
        if (hasFault("SnapshotNotForJson"))
            quote.insert(QStringLiteral("extra"), QVariant::fromValue(NotForJson()));
        return quote;
    }

    int GetQtyUnit(const QString &symbol) override { return isSymbol(symbol) && !hasFault("QtyUnitZero") ? 100 : 0; }

private:
    void tick(const QString &symbol)
    {
        const QString shown = hasFault("TicksUnderOtherSymbol") ? symbol.section(QLatin1Char('.'), 0, 0) : symbol;
        QVariantMap data;
        if (!hasFault("EmptyTicks"))
            data.insert(Security::symbol, symbol);
        if (hasFault("TicksNotForJson"))
            data.insert(QStringLiteral("extra"), QVariant::fromValue(NotForJson()));
        emit sigTickDataUpdate(shown, data);
    }

    QSet<QString> m_streamed; ///< used on the user-interface thread only
};

} // namespace

CommonQuotaHandler *CommonQuotaHandler::instance()
{
    static auto *const quotes = new Quotes; // never destroyed: the library stays connected until the process ends
    return quotes;
}
