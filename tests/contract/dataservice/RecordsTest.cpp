#include "DataServiceTest.h"

#include "Tessar_Fields.h"

#include <QDate>
#include <QJsonDocument>

#include <limits>
#include <thread>

using testing::_;
using testing::DoAll;
using testing::InSequence;
using testing::IsEmpty;
using testing::Return;
using testing::SetArgReferee;
using testing::SizeIs;

namespace {

using namespace Tessar_Fields;
using LineData = QMap<int, QVariantMap>;

const QVariantMap anOrder{{u"any field"_qs, 1}, {u"another"_qs, u"文"_qs}};

/// A cell as the generators fill it.
QVariantMap cell(const QVariant &display, const QVariant &user)
{
    return {{u"0"_qs, display}, {u"256"_qs, user}};
}

/// A cell as pages get it.
QVariant pair(const QVariant &display, const QVariant &user)
{
    return QVariantMap{{u"displayRole"_qs, display}, {u"userRole"_qs, user}};
}

class RecordsTest : public DataServiceTest {
protected:
    /// The JSON of the first cell, the order's time.
    QString timeCellText(const QVariant &display, const QVariant &user)
    {
        EXPECT_CALL(host, VarnelEntrustReportGen_fillLineData(_, _, _, _, _))
            .WillOnce(DoAll(SetArgReferee<1>(LineData{{0, cell(display, user)}}), Return(true)));
        const QString text = process->getEntrustOrderMsg({});
        const int begin = text.indexOf(u"\"entrustTime\":"_qs) + int(qstrlen("\"entrustTime\":"));
        return text.mid(begin, text.indexOf(u",\"exchangeOrderId\""_qs) - begin);
    }
};

TEST_F(RecordsTest, OrderIsHandedToItsGenerator)
{
    EXPECT_CALL(host,
                VarnelEntrustReportGen_fillLineData(Identical(anOrder), IsEmpty(), SizeIs(22), PlainShowType, false))
        .WillOnce(Return(true));
    process->packageEntrustOrderMsg(anOrder);
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(RecordsTest, ExecutionIsHandedToItsGenerator)
{
    EXPECT_CALL(host, VarnelDealReportGen_fillLineData(Identical(anOrder), IsEmpty(), SizeIs(16), PlainShowType, false))
        .WillOnce(Return(true));
    const QVariantMap record = process->packageExecutionOrderMsg(anOrder);
    EXPECT_TRUE(record.contains(u"dealTime"_qs) && record.contains(u"execId"_qs));
    EXPECT_FALSE(record.contains(u"entrustTime"_qs) || record.contains(u"status"_qs) || record.contains(u"remark"_qs));
}

TEST_F(RecordsTest, CellsThatAreNotFilledAreNull)
{
    EXPECT_CALL(host, VarnelEntrustReportGen_fillLineData(_, _, _, _, _)).WillOnce(Return(false));
    const QVariantMap record = process->packageEntrustOrderMsg({});
    EXPECT_EQ(record.size(), 22);
    for (const QVariant &value : record)
        EXPECT_THAT(value, Identical(pair(QVariant(), QVariant())));
}

TEST_F(RecordsTest, ResultOfTheGeneratorIsNotLookedAt)
{
    EXPECT_CALL(host, VarnelEntrustReportGen_fillLineData(_, _, _, _, _))
        .WillOnce(DoAll(SetArgReferee<1>(LineData{{5, cell(u"已成"_qs, 8)}}), Return(false)));
    EXPECT_THAT(process->packageEntrustOrderMsg({}).value(u"status"_qs), Identical(pair(u"已成"_qs, 8)));
}

TEST_F(RecordsTest, RolesAndIndicesBeyondTheColumnsAreLeftOut)
{
    const QVariantMap otherRoles{{u"1"_qs, 1}, {u"00"_qs, 2}, {u"257"_qs, 3}, {u"256"_qs, u"kept"_qs}};
    EXPECT_CALL(host, VarnelDealReportGen_fillLineData(_, _, _, _, _))
        .WillOnce(
            DoAll(SetArgReferee<1>(LineData{{-1, cell(1, 1)}, {2, otherRoles}, {16, cell(2, 2)}, {1000, cell(3, 3)}}),
                  Return(true)));
    const QVariantMap record = process->packageExecutionOrderMsg({});
    EXPECT_EQ(record.size(), 16);
    for (auto it = record.cbegin(); it != record.cend(); ++it) {
        const QVariant user = it.key() == u"securityName"_qs ? QVariant(u"kept"_qs) : QVariant();
        EXPECT_THAT(it.value(), Identical(pair(QVariant(), user))) << qPrintable(it.key());
    }
}

TEST_F(RecordsTest, ValuesOfEveryKindBecomeJson)
{
    const auto role = [this](const QVariant &value) {
        const QString text = timeCellText(value, value);
        const QString user = text.mid(text.indexOf(u",\"userRole\":"_qs) + int(qstrlen(",\"userRole\":")));
        EXPECT_EQ(text, u"{\"displayRole\":"_qs + user.chopped(1) + u",\"userRole\":"_qs + user);
        return user.chopped(1);
    };
    EXPECT_EQ(role(u"09:30:00"_qs), u"\"09:30:00\""_qs);
    EXPECT_EQ(role(QString()), u"\"\""_qs);
    EXPECT_EQ(role(u"\"\\\n\u0001\u0000𝄞</script>"_qs), uR"("\"\\\n\u0001\u0000𝄞</script>")"_qs);
    EXPECT_EQ(role(0), u"0"_qs);
    EXPECT_EQ(role(-7), u"-7"_qs);
    EXPECT_EQ(role(qlonglong(1234567890123456)), u"1234567890123456"_qs);
    EXPECT_EQ(role(qlonglong(9007199254740993)), u"9007199254740992"_qs); // beyond what a page's number can hold
    EXPECT_EQ(role(0.1 + 0.2), u"0.30000000000000004"_qs);
    EXPECT_EQ(role(1e300), u"1e+300"_qs);
    EXPECT_EQ(role(std::numeric_limits<double>::quiet_NaN()), u"null"_qs);
    EXPECT_EQ(role(-std::numeric_limits<double>::infinity()), u"null"_qs);
    EXPECT_EQ(role(QVariant()), u"null"_qs);
    EXPECT_EQ(role(true), u"true"_qs);
    EXPECT_EQ(role(QVariantList{1, u"a"_qs, QVariant()}), uR"([1,"a",null])"_qs);
    EXPECT_EQ(role(QVariantMap{{u"k"_qs, QVariantMap()}}), uR"({"k":{}})"_qs);
}

/// The text of an order is written without its map; it must be the text of that map.
TEST_F(RecordsTest, TextIsThatOfTheMap)
{
    const auto compact = [](const QVariantMap &map) {
        return QString::fromUtf8(QJsonDocument::fromVariant(map).toJson(QJsonDocument::Compact));
    };
    LineData line;
    const QVariantList values{u"文\""_qs,
                              QString(),
                              10.01,
                              0.1f,
                              qlonglong(-7),
                              true,
                              QVariant(),
                              QByteArray("b"),
                              QDate(2024, 1, 2),
                              QVariantMap{{u"k"_qs, 1}},
                              QVariantList{1},
                              QStringList{u"a"_qs}};
    for (int i = 0; i < values.size(); ++i)
        line.insert(i * 2, cell(values.at(i), values.at(values.size() - 1 - i))); // every other cell is not filled
    line[3] = {{u"256"_qs, 1}};                                                   // and one in part

    EXPECT_CALL(host, VarnelEntrustReportGen_fillLineData(_, _, _, _, _))
        .Times(2)
        .WillRepeatedly(DoAll(SetArgReferee<1>(line), Return(true)));
    EXPECT_EQ(process->getEntrustOrderMsg(anOrder), compact(process->packageEntrustOrderMsg(anOrder)));

    EXPECT_CALL(host, VarnelDealReportGen_fillLineData(_, _, _, _, _))
        .Times(2)
        .WillRepeatedly(DoAll(SetArgReferee<1>(line), Return(true)));
    EXPECT_EQ(process->getExecutionOrderMsg(anOrder), compact(process->packageExecutionOrderMsg(anOrder)));
}

TEST_F(RecordsTest, DisplayModeIsTheOneThatWasReadLast)
{
    const QVariantMap position{{Security::symbol, u"S"_qs}};
    const auto expectAll = [&](ShowType mode) {
        EXPECT_CALL(host, VarnelEntrustReportGen_fillLineData(_, _, _, mode, _)).RetiresOnSaturation();
        EXPECT_CALL(host, VarnelDealReportGen_fillLineData(_, _, _, mode, _)).RetiresOnSaturation();
        EXPECT_CALL(host, CommonQuotaHandler_GetQuotaSnapshot(u"S"_qs, 0)).RetiresOnSaturation();
        EXPECT_CALL(host, VarnelBusinessDataInterface_GetSecurityDetailsBySymbol(u"S"_qs)).RetiresOnSaturation();
        EXPECT_CALL(host, VarnelPositionReportGen_fillLineData(_, _, _, _, mode, _, _, _)).RetiresOnSaturation();
        process->packageEntrustOrderMsg({});
        process->packageExecutionOrderMsg({});
        process->packagePositionMsg(position);
    };
    expectAll(ShowType(0)); // before anybody has asked the host
    EXPECT_CALL(host, VarnelUtils_GetCurrentShowType())
        .WillOnce(Return(GroupedShowType))
        .WillOnce(Return(GroupedShowType))
        .WillOnce(Return(PlainShowType));
    process->init();
    expectAll(GroupedShowType);
    expectAll(GroupedShowType);
    process->init();
    process->init();
    expectAll(PlainShowType);
}

TEST_F(RecordsTest, PositionWithASymbolIsPackagedWithItsQuote)
{
    const QVariantMap record{{Security::symbol, u"600000.SH"_qs}, {Security::securityID, u"600000"_qs}};
    expectPosition(host, record, u"600000.SH"_qs, {{u"last"_qs, 7.5}});
    EXPECT_EQ(process->packagePositionMsg(record).size(), 19);
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(RecordsTest, PositionWithoutASymbolGetsTheHosts)
{
    const InSequence order;
    const QVariantMap record{
        {Security::symbol, QString()}, {Security::securityID, 600000}, {UserAccount::securityExchange, u"exchange"_qs}};
    EXPECT_CALL(host, VarnelBusinessDataInterface_GetSymbolBySecurityIDAndExchange(u"600000"_qs, u"exchange"_qs))
        .WillOnce(Return(u"found"_qs));
    expectPosition(host, record, u"found"_qs);
    process->packagePositionMsg(record);
}

TEST_F(RecordsTest, SecurityIdentifierStandsInForASymbolThatNobodyKnows)
{
    const InSequence order;
    const QVariantMap record{{Security::securityID, u"600000"_qs}};
    EXPECT_CALL(host, VarnelBusinessDataInterface_GetSymbolBySecurityIDAndExchange(u"600000"_qs, QString()))
        .WillOnce(Return(QString()));
    expectPosition(host, record, u"600000"_qs);
    process->packagePositionMsg(record);

    EXPECT_CALL(host, VarnelBusinessDataInterface_GetSymbolBySecurityIDAndExchange(QString(), QString()))
        .WillOnce(Return(QString()));
    expectPosition(host, {}, QString());
    process->packagePositionMsg({});
}

TEST_F(RecordsTest, PositionWithoutCellsIsNullButForItsInterest)
{
    EXPECT_CALL(host, CommonQuotaHandler_GetQuotaSnapshot(_, _));
    EXPECT_CALL(host, VarnelPositionReportGen_fillLineData(_, _, _, _, _, _, _, _))
        .WillOnce(DoAll(SetArgReferee<2>(LineData{{18, cell(1, 1)}, {0, {{u"256"_qs, 1}}}, {6, {{u"0"_qs, 1}}}}),
                        Return(false)));
    EXPECT_CALL(host, VarnelBusinessDataInterface_GetSecurityDetailsBySymbol(_));
    const QVariantMap record = process->packagePositionMsg({{Security::symbol, u"S"_qs}});
    EXPECT_EQ(record.size(), 19);
    for (auto it = record.cbegin(); it != record.cend(); ++it)
        EXPECT_THAT(it.value(), Identical(it.key() == u"stockInterest"_qs ? QVariant(0.0) : QVariant()));
}

TEST_F(RecordsTest, InterestIsThatOfABondWhoseDataCouldBeRead)
{
    const InSequence order;
    const QVariantMap record{{Security::symbol, u"S"_qs}};
    const auto interest = [&] { return process->packagePositionMsg(record).value(u"stockInterest"_qs); };

    for (const QVariantMap &details : {QVariantMap(), QVariantMap{{MDCFieldDefine::mdcSecurityType, u"share"_qs}}}) {
        expectPosition(host, record, u"S"_qs, {}, details);
        EXPECT_THAT(interest(), Identical(QVariant(0.0)));
    }
    for (const char *failure : {"1", "-1", "", "0 ", "00", "success"}) {
        expectPosition(host, record, u"S"_qs, {}, bondDetails());
        expectBond(host, u"S"_qs, QString::fromLatin1(failure), 9.9);
        EXPECT_THAT(interest(), Identical(QVariant(0.0))) << failure;
    }
    expectPosition(host, record, u"S"_qs, {}, bondDetails());
    expectBond(host, u"S"_qs, u"0"_qs, 1.25);
    EXPECT_THAT(interest(), Identical(QVariant(1.25)));
}

TEST_F(RecordsTest, PushTextsAreTheBareRecords)
{
    EXPECT_CALL(host, VarnelEntrustReportGen_fillLineData(Identical(anOrder), _, _, _, _)).WillOnce(Return(true));
    const QString entrust = process->getEntrustOrderMsg(anOrder);
    EXPECT_TRUE(entrust.startsWith(uR"({"dealAmount":{"displayRole":null,"userRole":null},"dealPrice":{)"_qs))
        << qPrintable(entrust);
    EXPECT_EQ(QJsonDocument::fromJson(entrust.toUtf8()).object().size(), 22);

    EXPECT_CALL(host, VarnelDealReportGen_fillLineData(Identical(anOrder), _, _, _, _)).WillOnce(Return(true));
    const QString execution = process->getExecutionOrderMsg(anOrder);
    EXPECT_EQ(QJsonDocument::fromJson(execution.toUtf8()).object().size(), 16);
    EXPECT_TRUE(execution.contains(uR"("execId":{"displayRole":null,"userRole":null})"_qs)) << qPrintable(execution);

    const QVariantMap position{{Security::symbol, u"S"_qs}};
    expectPosition(host, position, u"S"_qs);
    EXPECT_EQ(process->getPositionMsg(position),
              uR"({"cost":"value of cost","costCNY":"value of cost_cny","costPrice":"value of cost_price",)"
              uR"("currentQty":"value of current_qty","exchange":"display of exchange",)"
              uR"("fundAccount":"display of fundaccount","fundAccountName":"display of fundaccount_name",)"
              uR"("lastPrice":"value of last_price","marketValue":"value of market_value",)"
              uR"("marketValueCNY":"value of market_value_cny","profit":"value of profit",)"
              uR"("profitRate":"value of profit_rate","riseDownRate":"value of rise_down_rate",)"
              uR"("securityAccount":"display of security_account","securityId":"value of security_id",)"
              uR"("securityName":"display of security_name","stockInterest":0,"totalCost":"value of total_cost",)"
              uR"("tradableQty":"value of tradable_qty"})"_qs);
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(RecordsTest, RecordsArePackagedOnSeveralThreadsWhileTheDisplayModeChanges)
{
    constexpr int rounds = 50;
    EXPECT_CALL(host, VarnelUtils_GetCurrentShowType()).Times(rounds).WillRepeatedly(Return(GroupedShowType));
    EXPECT_CALL(host, VarnelEntrustReportGen_fillLineData(_, _, SizeIs(22), testing::Le(GroupedShowType), false))
        .Times(2 * rounds)
        .WillRepeatedly(testing::WithArgs<1, 2>(fillCells));
    const auto work = [this] {
        for (int i = 0; i < rounds; ++i)
            EXPECT_EQ(process->packageEntrustOrderMsg(anOrder).size(), 22);
    };
    std::thread one(work);
    std::thread other(work);
    for (int i = 0; i < rounds; ++i)
        process->init();
    one.join();
    other.join();
}

} // namespace
