// What the library asks the host for: the bytes of the input decide the answers.
#include "FuzzHost.h"
#include "VariantParts.h"

#include "BusinessDataInterface.h"
#include "CBusinessDataBase.h"
#include "CommonQuotaHandler.h"
#include "SearchConstants.h"
#include "VarnelBusiUtils.h"
#include "VarnelDealReportGen.h"
#include "VarnelEntrustReportGen.h"
#include "VarnelPositionReportGen.h"
#include "VarnelTradeLogic.h"

using FuzzHost::decisions;

namespace {

QList<QVariantMap> anyRecords(int most)
{
    QList<QVariantMap> records;
    for (int count = decisions().below(most + 1); count > 0; --count)
        records.append(anyMap(decisions()));
    return records;
}

/// Cells of one line: what is shown, and the value behind it.
bool fillCells(QMap<int, QVariantMap> &lineData, const QStringList &fields)
{
    for (int i = 0; i < fields.size() && !decisions().over(); ++i) {
        QVariantMap &cell = lineData[i];
        cell.insert(QStringLiteral("0"), anyValue(decisions()));
        cell.insert(QStringLiteral("256"), anyValue(decisions()));
    }
    return decisions().oneIn(2);
}

} // namespace

CBusinessDataBase *CBusinessDataBase::GetInstance()
{
    static CBusinessDataBase instance;
    return &instance;
}

QString CBusinessDataBase::GetLoginAccount() const
{
    return QString(300, QLatin1Char('x')); // too long for the name of a folder: settings are not written
}

QVariantMap CBusinessDataBase::GetAccountDetailsByTradinngAccount(const QString &)
{
    return anyMap(decisions());
}

QVariantMap CBusinessDataBase::getTradeAccountParam(const QString &, const QString &)
{
    return anyMap(decisions());
}

QString CBusinessDataBase::getClientOrderID()
{
    return QStringLiteral("c1");
}

QList<QVariantMap> BusinessDataInterface::GetOrderListByCustomKey(const QVariantMap &, int &total, int, int,
                                                                  QList<QString>, const QStringList &)
{
    total = decisions().bits<int>();
    return anyRecords(3);
}

QList<QVariantMap> BusinessDataInterface::GetExecutionListByCustomKey(const QVariantMap &, int &total, int, int,
                                                                      const QStringList &)
{
    total = decisions().bits<int>();
    return anyRecords(3);
}

QList<QVariantMap> BusinessDataInterface::GetPositionListByAccount(const QVariantMap &, const QString &,
                                                                   const QString &, const QString &, const QString &,
                                                                   const QString &, const QString &)
{
    return anyRecords(3);
}

QMap<QString, QVariant> BusinessDataInterface::GetOrderDetailByOrderID(const QString &)
{
    return anyMap(decisions());
}

QStringList VarnelBusiUtils::GetInputSymbolList(const QList<SymbolListType> &types)
{
    QStringList entries;
    for (const SymbolListType &type : types)
        entries.append(type.securityType + Constants::SymbolSearch_Split + anyText(decisions()) +
                       Constants::SymbolSearch_Split + anyText(decisions()));
    return entries;
}

bool VarnelEntrustReportGen::fillLineData(const QVariantMap &, QMap<int, QVariantMap> &lineData,
                                          const QStringList &fields, ShowType, bool)
{
    return fillCells(lineData, fields);
}

bool VarnelDealReportGen::fillLineData(const QVariantMap &, QMap<int, QVariantMap> &lineData, const QStringList &fields,
                                       ShowType, bool)
{
    return fillCells(lineData, fields);
}

bool VarnelPositionReportGen::fillLineData(int, const QVariantMap &, QMap<int, QVariantMap> &lineData,
                                           const QStringList &fields, ShowType, const QVariantMap &, const QString &,
                                           bool)
{
    return fillCells(lineData, fields);
}

VarnelTradeLogic *VarnelTradeLogic::instance()
{
    static VarnelTradeLogic instance;
    return &instance;
}

int VarnelTradeLogic::getDispQtyStepBySymbol(const QString &)
{
    return decisions().bits<int>();
}

QString VarnelTradeLogic::queryMaxTradableQty(const OrderRequestList &)
{
    return anyText(decisions());
}

int VarnelTradeLogic::orders(const OrderRequestList &, QVariant &, int, QList<VarnelLogic::ResponseInfo> &errors, bool)
{
    if (decisions().oneIn(4))
        errors.append({-1, anyText(decisions())});
    return decisions().oneIn(4) ? -1 : 0;
}

QList<QMap<QString, QVariant>> VarnelTradeLogic::transOrderRsp(const OrderRequestList &, const QVariant &)
{
    return anyRecords(2);
}

CommonQuotaHandler::CommonQuotaHandler(QObject *parent) : QObject(parent) {}

CommonQuotaHandler::~CommonQuotaHandler() = default;

namespace {

class AnyQuotes : public CommonQuotaHandler {
public:
    int SubscribeQuota(const QStringList &, bool, int) override { return 0; }
    QMap<QString, QVariant> GetQuotaSnapshot(const QString &, int) override { return anyMap(decisions()); }
    int GetQtyUnit(const QString &) override { return decisions().bits<int>(); }
};

} // namespace

CommonQuotaHandler *CommonQuotaHandler::instance()
{
    static auto *const handler = new AnyQuotes; // never deleted: it must be valid until the process ends
    return handler;
}
