// The definitions below stand in for the simulator's: a symbol of the executable comes before that of a shared library.

#include "CheapHost.h"

#include "dataservice/DataProcess.h"

#include "BusinessDataInterface.h"
#include "CBusinessDataBase.h"
#include "CommonQuotaHandler.h"
#include "QvCore.h"
#include "SearchConstants.h"
#include "Tessar_Fields.h"
#include "VarnelBusiUtils.h"
#include "VarnelBusinessDataInterface.h"
#include "VarnelCefView.h"
#include "VarnelDealReportGen.h"
#include "VarnelEntrustReportGen.h"
#include "VarnelPositionReportGen.h"
#include "VarnelTradeLogic.h"

#include <QJsonDocument>

#include <atomic>

namespace {

using LineData = QMap<int, QVariantMap>;

std::atomic<qint64> dropped{0};
QStringList searchEntries;

const QVariantMap securityDetails{
    {Tessar_Fields::Security::symbol, QStringLiteral("609801.SH")},
    {Tessar_Fields::Security::securityID, QStringLiteral("609801")},
    {Tessar_Fields::UserAccount::securityExchange, QStringLiteral("SH")},
    {Tessar_Fields::Security::chineseName, QStringLiteral("华安制造")},
    {Tessar_Fields::Security::spellCode, QStringLiteral("HAZZ")},
    {Tessar_Fields::Security::priceLimitType, true},
};

/// What a terminal's report shows in a line: times, names, prices, quantities and amounts, each as the text on the
/// screen and the value below it.
LineData makeLine(int columns)
{
    LineData line;
    for (int i = 0; i < columns; ++i) {
        QVariant display;
        QVariant user;
        switch (i % 4) {
        case 0:
            display = QStringLiteral("09:30:%1").arg(10 + i);
            user = QStringLiteral("202401020930%1").arg(10 + i);
            break;
        case 1:
            display = QStringLiteral("华安制造%1").arg(i);
            user = display;
            break;
        case 2:
            display = QStringLiteral("%1").arg(10.01 + i, 0, 'f', 2);
            user = 10.01 + i;
            break;
        default:
            display = QStringLiteral("%1").arg(100 * i);
            user = qlonglong(100 * i);
        }
        line.insert(i, {{QString::number(Qt::DisplayRole), display}, {QString::number(Qt::UserRole), user}});
    }
    return line;
}

bool fill(LineData &lineData, int columns)
{
    static const LineData orderLine = makeLine(22);
    static const LineData executionLine = makeLine(16);
    static const LineData positionLine = makeLine(18);
    lineData = columns == 22 ? orderLine : columns == 16 ? executionLine : positionLine;
    return true;
}

class CheapQuotes : public CommonQuotaHandler {
public:
    int SubscribeQuota(const QStringList &, bool, int) override { return 0; }
    QMap<QString, QVariant> GetQuotaSnapshot(const QString &, int) override { return m_quote; }
    int GetQtyUnit(const QString &) override { return 100; }

private:
    const QVariantMap m_quote = CheapHost::quote();
};

/// The first element of what the library replies with.
QVariantMap firstRecord(const QString &reply, const QString &listKey)
{
    const QVariant result =
        QJsonDocument::fromJson(reply.toUtf8()).toVariant().toMap().value(QStringLiteral("resultData"));
    return (listKey.isEmpty() ? result : result.toMap().value(listKey)).toList().value(0).toMap();
}

} // namespace

QVariantMap CheapHost::quote()
{
    QVariantMap quote{{QStringLiteral("Symbol"), QStringLiteral("609801.SH")},
                      {QStringLiteral("Time"), QStringLiteral("20240102093015000")},
                      {QStringLiteral("TradingPhase"), QStringLiteral("T111")},
                      {QStringLiteral("Volume"), qlonglong(123456700)},
                      {QStringLiteral("Amount"), 1234567890.12}};
    for (int level = 1; level <= 8; ++level) {
        quote.insert(QStringLiteral("BidPrice%1").arg(level), 10.01 - 0.01 * level);
        quote.insert(QStringLiteral("BidQty%1").arg(level), qlonglong(1300 * level));
        quote.insert(QStringLiteral("AskPrice%1").arg(level), 10.01 + 0.01 * level);
        quote.insert(QStringLiteral("AskQty%1").arg(level), qlonglong(1700 * level));
    }
    const char *const prices[] = {"PreviousClose", "Open", "Last"};
    for (const char *const name : prices)
        quote.insert(QLatin1String(name), 9.87);
    Q_ASSERT(quote.size() == 40);
    return quote;
}

QVariantMap CheapHost::order(int number)
{
    return {{Tessar_Fields::Security::orderID, QStringLiteral("B%1").arg(number)},
            {Tessar_Fields::Security::symbol, QStringLiteral("609801.SH")}};
}

QVariantMap CheapHost::orderRecord()
{
    return DataProcess::instance()->packageEntrustOrderMsg(order(1));
}

QVariantMap CheapHost::positionRecord()
{
    return DataProcess::instance()->packagePositionMsg(order(1));
}

QVariantMap CheapHost::securityRecord()
{
    return firstRecord(DataProcess::instance()->processSymbolDetail(QString(), QStringLiteral("609801.SH")), QString());
}

void CheapHost::listSecurities(int count)
{
    if (searchEntries.size() == count)
        return;
    searchEntries.clear();
    for (int i = 0; i < count; ++i) {
        const QStringList parts{QStringLiteral("%1.SH").arg(600000 + i), QStringLiteral("华安制造"),
                                QStringLiteral("HAZZ")};
        searchEntries.append(parts.join(Constants::SymbolSearch_Split));
    }
}

qint64 CheapHost::droppedEvents()
{
    return dropped;
}

bool QCefView::broadcastEvent(const QCefEvent &event)
{
    dropped.fetch_add(event.arguments().size(), std::memory_order_relaxed);
    return true;
}

QString QvCore::getCurrentToken()
{
    static const QString token = QStringLiteral("b2a1c7e0-5d2f-4a8b-9c3e-1f6d8a7b4c21");
    return token;
}

bool VarnelEntrustReportGen::fillLineData(const QVariantMap &, QMap<int, QVariantMap> &lineData,
                                          const QStringList &fields, ShowType, bool)
{
    return fill(lineData, fields.size());
}

bool VarnelDealReportGen::fillLineData(const QVariantMap &, QMap<int, QVariantMap> &lineData, const QStringList &fields,
                                       ShowType, bool)
{
    return fill(lineData, fields.size());
}

bool VarnelPositionReportGen::fillLineData(int, const QVariantMap &, QMap<int, QVariantMap> &lineData,
                                           const QStringList &fields, ShowType, const QVariantMap &, const QString &,
                                           bool)
{
    return fill(lineData, fields.size());
}

/// As many as the second integer asks for.
QList<QVariantMap> BusinessDataInterface::GetOrderListByCustomKey(const QVariantMap &, int &total, int, int count,
                                                                  QList<QString>, const QStringList &)
{
    static QList<QVariantMap> orders;
    while (orders.size() < count)
        orders.append(CheapHost::order(orders.size()));
    total = count;
    return orders.size() == count ? orders : orders.mid(0, count);
}

QList<QVariantMap> BusinessDataInterface::GetPositionListByAccount(const QVariantMap &, const QString &,
                                                                   const QString &, const QString &, const QString &,
                                                                   const QString &, const QString &)
{
    static const QList<QVariantMap> positions = [] {
        QList<QVariantMap> made;
        for (int i = 0; i < 100; ++i)
            made.append(CheapHost::order(i));
        return made;
    }();
    return positions;
}

CommonQuotaHandler *CommonQuotaHandler::instance()
{
    static auto *const handler = new CheapQuotes; // never destroyed, as the simulator's
    return handler;
}

QVariantMap CBusinessDataBase::GetAccountDetailsByTradinngAccount(const QString &)
{
    return {};
}

QList<tagUserAccountInfo> VarnelBusinessDataInterface::GetAccountInfoListFromFund(QString fundAccount, bool)
{
    return {{fundAccount, QStringLiteral("fund"), QStringLiteral("trading")}};
}

QVariantMap VarnelBusinessDataInterface::GetSecurityDetailsBySymbol(const QString &)
{
    return securityDetails;
}

int VarnelBusinessDataInterface::GetPricePrecisionBySymbol(const QString &, const QString &)
{
    return 2;
}

double VarnelBusinessDataInterface::GetPriceUnitBySymbol(const QString &, double, const QString &)
{
    return 0.01;
}

int VarnelBusinessDataInterface::GetQtyStepBySymbol(const QString &)
{
    return 100;
}

qint64 VarnelBusinessDataInterface::GetMinQtyPerOrderBySymbol(const QString &)
{
    return 100;
}

qint64 VarnelBusinessDataInterface::GetMaxQtyPerOrderBySymbol(const QString &, const QVariantMap &)
{
    return 1000000;
}

QString VarnelBusinessDataInterface::GetSecurityTypeBySymbol(const QString &)
{
    return QStringLiteral("Stock");
}

QString VarnelBusinessDataInterface::GetSecuritySubTypeBySymbol(const QString &)
{
    return QStringLiteral("A");
}

int VarnelTradeLogic::getDispQtyStepBySymbol(const QString &)
{
    return 100;
}

QStringList VarnelBusiUtils::GetInputSymbolList(const QList<SymbolListType> &)
{
    return searchEntries;
}
