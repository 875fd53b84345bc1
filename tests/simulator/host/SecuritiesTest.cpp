#include "TerminalTest.h"

#include "CommonQuotaHandler.h"
#include "HostTypes.h"
#include "QvBondDataMgr.h"
#include "SearchConstants.h"
#include "Tessar_Fields.h"
#include "Tessar_Values.h"
#include "VarnelBusiUtils.h"
#include "VarnelBusinessDataInterface.h"
#include "VarnelTradeLogic.h"

#include <QFile>
#include <QLocale>
#include <QSet>

using namespace sim;
using Host = VarnelBusinessDataInterface;

namespace {

const QString kMain = QStringLiteral("609801.SH");
const QString kGrowth = QStringLiteral("309812.SZ");
const QString kFund = QStringLiteral("189822.SZ"); // with the separator in its name
const QString kBond = QStringLiteral("119831.SH");
const QString kFuture = QStringLiteral("YL2503.CF");
const QString kCotton = QStringLiteral("NM2505.CF");
const QString kUnknown = QStringLiteral("600000");

class SecuritiesTest : public TerminalTest {
protected:
    const QVector<Instrument> &all() const { return terminal.exchange().instruments(); }

    /// Expects exactly the matching securities, in order; there must be some, but not all.
    template <typename Fits>
    void expectListed(const QList<SymbolListType> &types, Fits fits)
    {
        QStringList expected;
        for (const Instrument &instrument : all()) {
            if (fits(instrument))
                expected.append(instrument.symbol + QLatin1Char('|') + instrument.name + QLatin1Char('|') +
                                instrument.spellCode);
        }
        EXPECT_EQ(expected, VarnelBusiUtils::GetInputSymbolList(types));
        EXPECT_FALSE(expected.isEmpty());
        EXPECT_LT(expected.size(), all().size());
    }

    static SymbolListType type(const QString &securityType, const QStringList &subTypes = {},
                               const QStringList &boards = {})
    {
        return {securityType, subTypes, boards};
    }

    QVariantMap snapshot(const QString &symbol) { return CommonQuotaHandler::instance()->GetQuotaSnapshot(symbol, 0); }
};

const QString kShareType = QStringLiteral("Share");
const QString kMainBoard = QStringLiteral("main");

} // namespace

TEST_F(SecuritiesTest, AboutThreeHundredAreListed)
{
    EXPECT_EQ(scenario.securities.size() + scenario.generatedSecurities, all().size());
    EXPECT_GE(all().size(), 300);
}

TEST_F(SecuritiesTest, NoClassesSelectAll)
{
    EXPECT_EQ(all().size(), VarnelBusiUtils::GetInputSymbolList({}).size());
    EXPECT_EQ(all().size(), VarnelBusiUtils::GetInputSymbolList({SymbolListType()}).size());
}

TEST_F(SecuritiesTest, AClassSelectsByTypeSubTypesAndBoards)
{
    expectListed({type(kShareType)}, [](const Instrument &each) { return each.kind == SecurityKind::Share; });
    expectListed(
        {type(QString(), {QStringLiteral("TreasuryBond"), QStringLiteral("IndexFuture")})}, [](const Instrument &each) {
            return each.subType == QLatin1String("TreasuryBond") || each.subType == QLatin1String("IndexFuture");
        });
    expectListed({type(QString(), {}, {kMainBoard})}, [](const Instrument &each) { return each.board == kMainBoard; });
    expectListed({type(kShareType, {QStringLiteral("GrowthShare"), QStringLiteral("IndexFuture")},
                       {QStringLiteral("growth"), QStringLiteral("financial")})},
                 [](const Instrument &each) { return each.subType == QLatin1String("GrowthShare"); });
}

TEST_F(SecuritiesTest, SeveralClassesTogetherListEachSecurityOnce)
{
    expectListed(
        {type(QStringLiteral("Bond")), type(kShareType), type(kShareType, {}, {kMainBoard})},
        [](const Instrument &each) { return each.kind == SecurityKind::Share || each.kind == SecurityKind::Bond; });
}

TEST_F(SecuritiesTest, UnknownClassesSelectNothing)
{
    EXPECT_TRUE(VarnelBusiUtils::GetInputSymbolList({type(QStringLiteral("share"))}).isEmpty());
    EXPECT_TRUE(VarnelBusiUtils::GetInputSymbolList({type(kShareType, {QString()})}).isEmpty());
    EXPECT_TRUE(VarnelBusiUtils::GetInputSymbolList({type(kShareType, {}, {QStringLiteral("bond")})}).isEmpty());
}

TEST_F(SecuritiesTest, ANameMayContainTheSeparator)
{
    EXPECT_TRUE(terminal.exchange().instrument(kFund)->name.contains(Constants::SymbolSearch_Split));
    EXPECT_EQ(1, VarnelBusiUtils::GetInputSymbolList({}).filter(kFund).size());
}

TEST_F(SecuritiesTest, DetailsDescribeTheSecurity)
{
    const QVariantMap details = Host::GetSecurityDetailsBySymbol(kBond);
    EXPECT_EQ(QVariant(kBond), details.value(Tessar_Fields::Security::symbol));
    EXPECT_EQ(QVariant(QStringLiteral("119831")), details.value(Tessar_Fields::Security::securityID));
    EXPECT_EQ(QVariant(QStringLiteral("SH")), details.value(Tessar_Fields::UserAccount::securityExchange));
    EXPECT_EQ(QVariant(QString::fromUtf8("东岚转债")), details.value(Tessar_Fields::Security::chineseName));
    EXPECT_EQ(QVariant(QStringLiteral("DLZZ")), details.value(Tessar_Fields::Security::spellCode));
    EXPECT_EQ(QVariant(true), details.value(Tessar_Fields::Security::priceLimitType));
    EXPECT_EQ(QVariant(Tessar_Values::MdcSecurityType::BondType),
              details.value(Tessar_Fields::MDCFieldDefine::mdcSecurityType));
    EXPECT_EQ(kBond, Host::GetSymbolBySecurityIDAndExchange(QStringLiteral("119831"), QStringLiteral("SH")));
}

TEST_F(SecuritiesTest, OnlySecuritiesWithAPriceLimitAreMarked)
{
    for (const Instrument &instrument : all()) {
        EXPECT_EQ(QVariant(instrument.limitRate > 0),
                  Host::GetSecurityDetailsBySymbol(instrument.symbol).value(Tessar_Fields::Security::priceLimitType));
        EXPECT_EQ(instrument.subType == QLatin1String("TreasuryBond"), instrument.limitRate == 0);
    }
}

TEST_F(SecuritiesTest, TradingRulesAreThoseOfTheSubType)
{
    EXPECT_EQ(2, Host::GetPricePrecisionBySymbol(kMain, QString()));
    EXPECT_EQ(3, Host::GetPricePrecisionBySymbol(kFund, QString()));
    EXPECT_EQ(1, Host::GetPricePrecisionBySymbol(kFuture, QString()));
    EXPECT_EQ(0, Host::GetPricePrecisionBySymbol(kCotton, QString()));
    EXPECT_EQ(0.01, Host::GetPriceUnitBySymbol(kMain, 0, QString()));
    EXPECT_EQ(0.2, Host::GetPriceUnitBySymbol(kFuture, 0, QString()));
    EXPECT_EQ(5, Host::GetPriceUnitBySymbol(kCotton, 0, QString()));
    EXPECT_EQ(100, Host::GetQtyStepBySymbol(kMain));
    EXPECT_EQ(1, Host::GetQtyStepBySymbol(kGrowth));
    EXPECT_EQ(100, VarnelTradeLogic::instance()->getDispQtyStepBySymbol(kGrowth));
    EXPECT_EQ(100, Host::GetMinQtyPerOrderBySymbol(kMain));
    EXPECT_EQ(200, Host::GetMinQtyPerOrderBySymbol(kGrowth));
    EXPECT_EQ(10, Host::GetMinQtyPerOrderBySymbol(kBond));
    EXPECT_EQ(1000000, Host::GetMaxQtyPerOrderBySymbol(kMain, QVariantMap()));
    EXPECT_EQ(QStringLiteral("Future"), Host::GetSecurityTypeBySymbol(kFuture));
    EXPECT_EQ(QStringLiteral("CommodityFuture"), Host::GetSecuritySubTypeBySymbol(kCotton));
    EXPECT_EQ(1, CommonQuotaHandler::instance()->GetQtyUnit(kMain));
}

TEST_F(SecuritiesTest, TheRulesAreTheDocumentedOnes)
{
    QFile page(QStringLiteral(DOCS_FOLDER "/vocabulary.md"));
    ASSERT_TRUE(page.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(page.readAll());
    const QLocale grouping(QLocale::English, QLocale::UnitedStates);
    QSet<QString> subTypes;
    for (const Instrument &instrument : all()) {
        const QString &symbol = instrument.symbol;
        const QString limit = QStringLiteral("%1 %").arg(qRound(100 * instrument.limitRate));
        const QStringList cells{QLatin1Char('`') + Host::GetSecuritySubTypeBySymbol(symbol) + QLatin1Char('`'),
                                QLatin1Char('`') + Host::GetSecurityTypeBySymbol(symbol) + QLatin1Char('`'),
                                QLatin1Char('`') + instrument.board + QLatin1Char('`'),
                                QString::number(Host::GetQtyStepBySymbol(symbol)),
                                QString::number(Host::GetMinQtyPerOrderBySymbol(symbol)),
                                grouping.toString(Host::GetMaxQtyPerOrderBySymbol(symbol, QVariantMap())),
                                QString::number(VarnelTradeLogic::instance()->getDispQtyStepBySymbol(symbol)),
                                instrument.limitRate > 0 ? limit : QStringLiteral("none")};
        const QString row = QStringLiteral("| %1 |").arg(cells.join(QStringLiteral(" | ")));
        EXPECT_TRUE(text.contains(row)) << qPrintable(row);
        subTypes.insert(instrument.subType);
    }
    EXPECT_EQ(8, subTypes.size());
}

TEST_F(SecuritiesTest, UnknownSymbolsGiveEmptyAnswers)
{
    EXPECT_TRUE(Host::GetSecurityDetailsBySymbol(kUnknown).isEmpty());
    EXPECT_EQ(QString(), Host::GetSymbolBySecurityIDAndExchange(QStringLiteral("609801"), QStringLiteral("SZ")));
    EXPECT_EQ(0, Host::GetPricePrecisionBySymbol(kUnknown, QString()));
    EXPECT_EQ(0.5, Host::GetPriceUnitBySymbol(kUnknown, 0.5, QString()));
    EXPECT_EQ(0, Host::GetQtyStepBySymbol(kUnknown));
    EXPECT_EQ(0, VarnelTradeLogic::instance()->getDispQtyStepBySymbol(kUnknown));
    EXPECT_EQ(0, Host::GetMinQtyPerOrderBySymbol(kUnknown));
    EXPECT_EQ(0, Host::GetMaxQtyPerOrderBySymbol(kUnknown, QVariantMap()));
    EXPECT_EQ(QString(), Host::GetSecurityTypeBySymbol(kUnknown));
    EXPECT_EQ(QString(), Host::GetSecuritySubTypeBySymbol(kUnknown));
    EXPECT_EQ(0, CommonQuotaHandler::instance()->GetQtyUnit(kUnknown));
    EXPECT_TRUE(snapshot(kUnknown).isEmpty());
}

TEST_F(SecuritiesTest, OnlyBondsHaveInterest)
{
    for (const Instrument &instrument : all()) {
        stuBaseInfo info;
        const QString result = QvBondDataMgr::instance()->GetSingelBondBaseInfo(instrument.symbol, info);
        const bool isBond = instrument.kind == SecurityKind::Bond;
        EXPECT_EQ(isBond, result == QStringLiteral("0")) << qPrintable(instrument.symbol);
        EXPECT_EQ(isBond ? instrument.name : QString(), info.bondName);
        EXPECT_EQ(instrument.interest, info.interest);
    }
    stuBaseInfo info;
    QvBondDataMgr::instance()->GetSingelBondBaseInfo(kBond, info);
    EXPECT_EQ(0.8534, info.interest);
    EXPECT_NE(QStringLiteral("0"), QvBondDataMgr::instance()->GetSingelBondBaseInfo(kUnknown, info));
}

TEST_F(SecuritiesTest, ASnapshotHasTheDocumentedFields)
{
    const QVariantMap quote = snapshot(kMain);
    EXPECT_EQ(QStringLiteral("amount askPrices askQtys bidPrices bidQtys high last low lowerLimit open previousClose "
                             "symbol time upperLimit volume")
                  .split(QLatin1Char(' ')),
              quote.keys());
    EXPECT_EQ(QVariant(kMain), quote.value(QStringLiteral("symbol")));
    EXPECT_EQ(QVariant(18.36), quote.value(QStringLiteral("previousClose")));
    EXPECT_EQ(QVariant(20.2), quote.value(QStringLiteral("upperLimit")));
    EXPECT_TRUE(quote.value(QStringLiteral("time")).toString().startsWith(QStringLiteral("20250303")));
    for (const char *list : {"askPrices", "askQtys", "bidPrices", "bidQtys"})
        EXPECT_EQ(5, quote.value(QLatin1String(list)).toList().size()) << list;
    EXPECT_GT(quote.value(QStringLiteral("askPrices")).toList()[0].toDouble(),
              quote.value(QStringLiteral("bidPrices")).toList()[0].toDouble());
}

TEST_F(SecuritiesTest, ASubscriptionIsAccepted)
{
    EXPECT_EQ(0, CommonQuotaHandler::instance()->SubscribeQuota({kMain}, true, 0));
}
