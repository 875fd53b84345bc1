#include "HostAnswers.h"

#include "Tessar_Fields.h"
#include "Tessar_Values.h"

using testing::InSequence;
using testing::IsEmpty;
using testing::Return;
using testing::WithArgs;

void expectAccounts(HostMock &host, const QString &fundAccount, const QList<tagUserAccountInfo> &accounts)
{
    EXPECT_CALL(host, VarnelBusinessDataInterface_GetAccountInfoListFromFund(fundAccount, true))
        .WillOnce(Return(accounts));
}

QString displayText(const QString &column)
{
    return QStringLiteral("display of ") + column;
}

QString userValue(const QString &column)
{
    return QStringLiteral("value of ") + column;
}

bool fillCells(QMap<int, QVariantMap> &lineData, const QStringList &columns)
{
    for (int i = 0; i < columns.size(); ++i)
        lineData[i] = {{QStringLiteral("0"), displayText(columns.at(i))},
                       {QStringLiteral("256"), userValue(columns.at(i))}};
    return true;
}

void expectPosition(HostMock &host, const QVariantMap &record, const QString &symbol, const QVariantMap &quote,
                    const QVariantMap &securityDetails)
{
    const InSequence order;
    EXPECT_CALL(host, CommonQuotaHandler_GetQuotaSnapshot(symbol, 0)).WillOnce(Return(quote));
    EXPECT_CALL(host, VarnelPositionReportGen_fillLineData(0, Identical(record), IsEmpty(), testing::SizeIs(18),
                                                           testing::_, Identical(quote), QString(), false))
        .WillOnce(WithArgs<2, 3>(fillCells));
    EXPECT_CALL(host, VarnelBusinessDataInterface_GetSecurityDetailsBySymbol(symbol)).WillOnce(Return(securityDetails));
}

void expectSecurity(HostMock &host, const QString &symbol, const SecurityAnswers &answers)
{
    const InSequence order;
    EXPECT_CALL(host, VarnelBusinessDataInterface_GetSecurityDetailsBySymbol(symbol)).WillOnce(Return(answers.details));
    EXPECT_CALL(host, CommonQuotaHandler_GetQtyUnit(symbol)).WillOnce(Return(answers.qtyUnit));
    EXPECT_CALL(host, VarnelBusinessDataInterface_GetPricePrecisionBySymbol(symbol, QString()))
        .WillOnce(Return(answers.precision));
    EXPECT_CALL(host, VarnelBusinessDataInterface_GetPriceUnitBySymbol(symbol, 0.0, QString()))
        .WillOnce(Return(answers.priceUnit));
    EXPECT_CALL(host, VarnelTradeLogic_getDispQtyStepBySymbol(symbol)).WillOnce(Return(answers.displayQtyStep));
    EXPECT_CALL(host, VarnelBusinessDataInterface_GetQtyStepBySymbol(symbol)).WillOnce(Return(answers.qtyStep));
    EXPECT_CALL(host, VarnelBusinessDataInterface_GetMinQtyPerOrderBySymbol(symbol)).WillOnce(Return(answers.minQty));
    EXPECT_CALL(host, VarnelBusinessDataInterface_GetMaxQtyPerOrderBySymbol(symbol, IsEmpty()))
        .WillOnce(Return(answers.maxQty));
    EXPECT_CALL(host, VarnelBusinessDataInterface_GetSecurityTypeBySymbol(symbol)).WillOnce(Return(answers.type));
    EXPECT_CALL(host, VarnelBusinessDataInterface_GetSecuritySubTypeBySymbol(symbol)).WillOnce(Return(answers.subType));
}

void expectBond(HostMock &host, const QString &symbol, const QString &result, double interest)
{
    EXPECT_CALL(host, QvBondDataMgr_GetSingelBondBaseInfo(symbol, testing::_))
        .WillOnce([result, interest](const QString &, stuBaseInfo &info) {
            EXPECT_EQ(info.symbol, QString());
            EXPECT_EQ(info.bondName, QString());
            EXPECT_EQ(info.interest, 0.0);
            info.interest = interest;
            return result;
        });
}

QVariantMap bondDetails()
{
    return {{Tessar_Fields::MDCFieldDefine::mdcSecurityType, Tessar_Values::MdcSecurityType::BondType}};
}
