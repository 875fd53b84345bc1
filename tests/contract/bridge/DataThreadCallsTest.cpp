#include "DispatcherTest.h"

#include "HostAnswers.h"
#include "OwnAccount.h"
#include "Replies.h"

#include "Algo_Fields.h"
#include "Algo_Values.h"
#include "SearchConstants.h"
#include "Tessar_Fields.h"
#include "Varnel_Fields.h"

using testing::_;
using testing::InSequence;
using testing::Return;

namespace {

using namespace Tessar_Fields;

/// Each call of a page: how its arguments are read, and that its answer becomes its event.
class DataThreadCallsTest : private OwnAccount, public DispatcherTest {
protected:
    DataThreadCallsTest() : DispatcherTest(startOf(name)) {}

    /// The fund account "7" may use the aliased support type.
    static HostStart startOf(const QString &account)
    {
        HostStart start;
        start.loginAccount = account;
        start.permissions = {{{Varnel_Fields::FastFocus::fundAccount, u"7"_qs},
                              {Algo_Fields::VarnelStrategy::supportType, Algo_Values::SupprotType::KFZ_SNB}}};
        return start;
    }

    /// Makes a call with the uuid "u1" and these parameters, and returns the text of its only event.
    QString answerTo(const char *method, const QVariantList &parameters)
    {
        view.clear();
        EXPECT_TRUE(call(method, QVariantList{u"u1"_qs} + parameters));
        const QStringList event = received();
        EXPECT_EQ(event.value(0), QString::fromLatin1(method).replace(u"_REQ"_qs, u"_RES"_qs));
        EXPECT_EQ(event.size(), 2);
        return event.value(1);
    }
};

const QString hostile = u"\"\\\n\u0000𝄞,</script>%1"_qs;

const struct {
    QVariant sent;
    QString text;
} textReadings[] = {{u"S"_qs, u"S"_qs},
                    {QString(), QString()},
                    {7, u"7"_qs},
                    {1.5, u"1.5"_qs},
                    {true, u"true"_qs},
                    {QVariant(), QString()},
                    {QVariantMap(), QString()},
                    {QVariantList{1, 2}, QString()}};

const struct {
    QVariant sent;
    int number;
} integerReadings[] = {{u"20"_qs, 20},
                       {-3, -3},
                       {u" 5 "_qs, 5},
                       {2.5, 0},
                       {true, 0},
                       {QVariant(), 0},
                       {u"0x10"_qs, 0},
                       {QVariantList(), 0},
                       {u"2147483648"_qs, 0}};

TEST_F(DataThreadCallsTest, SymbolDetailAnswersForTheText)
{
    for (const auto &reading : textReadings) {
        expectSecurity(host, reading.text, {{{Security::symbol, u"shown"_qs}}});
        EXPECT_EQ(resultOf(answerTo("Data_getSymbolDetail_REQ", {reading.sent})).toArray().size(), 1);
    }
    const InSequence order;
    const QStringList parts = hostile.split(u',');
    for (const QString &part : parts)
        expectSecurity(host, part);
    EXPECT_EQ(resultOf(answerTo("Data_getSymbolDetail_REQ", {hostile})).toArray().size(), parts.size());
}

TEST_F(DataThreadCallsTest, CurrentTickFetchesTheQuoteFirst)
{
    for (const auto &reading : textReadings) {
        EXPECT_CALL(host, CommonQuotaHandler_GetQuotaSnapshot(reading.text, 0)).WillOnce([this] {
            EXPECT_TRUE(view.events().isEmpty());
            return QVariantMap{{u"last"_qs, 7.25}};
        });
        EXPECT_EQ(answerTo("Data_getCurrentTick_REQ", {reading.sent}), successReply(uR"({"last":7.25})"_qs));
    }
    EXPECT_CALL(host, CommonQuotaHandler_GetQuotaSnapshot(hostile, 0)).WillOnce(Return(QVariantMap()));
    EXPECT_EQ(answerTo("Data_getCurrentTick_REQ", {hostile}), successReply(u"{}"_qs));
}

TEST_F(DataThreadCallsTest, SymbolListsTakeTheFilterAsItIs)
{
    const QString filter = uR"({"symbolFilter":[{"securityType":"stock"}]})"_qs;
    EXPECT_CALL(host, VarnelBusiUtils_GetInputSymbolList(testing::SizeIs(1)))
        .Times(2)
        .WillRepeatedly(
            Return(QStringList{(QStringList{u"S"_qs, u"N"_qs, u"M"_qs}).join(Constants::SymbolSearch_Split)}));
    EXPECT_EQ(answerTo("Data_getSymbolList_REQ", {filter}),
              successReply(uR"([{"displayName":"N","spellName":"M","symbol":"S"}])"_qs));
    expectSecurity(host, u"S"_qs);
    EXPECT_EQ(resultOf(answerTo("Data_getSymbolListWithDetail_REQ", {filter})).toArray().size(), 1);
}

TEST_F(DataThreadCallsTest, FiltersThatAreObjectsReachTheServiceAsSuchAndAreRefused)
{
    for (const char *method : {"Data_getSymbolList_REQ", "Data_getSymbolListWithDetail_REQ", "Data_getEntrustList_REQ",
                               "Data_getExecutionList_REQ"}) {
        log.clear();
        EXPECT_EQ(answerTo(method, {QVariantMap{{u"marker"_qs, QVariantList()}}, 1, 1}),
                  refusal(u"过滤条件参数转换错误"_qs));
        EXPECT_EQ(log.linesWith(u"marker"_qs).size(), 1) << method;
    }
}

TEST_F(DataThreadCallsTest, OrderListReadsTheFilterAndTwoIntegers)
{
    for (const auto &reading : integerReadings) {
        EXPECT_CALL(host, BusinessDataInterface_GetOrderListByCustomKey(
                              Identical(QVariantMap{{Security::symbol, QStringList{u"S"_qs}}}), testing::Eq(0),
                              reading.number, 77, testing::IsEmpty(), testing::IsEmpty()))
            .WillOnce(Return(QList<QVariantMap>()));
        EXPECT_EQ(answerTo("Data_getEntrustList_REQ", {uR"({"symbol":"S"})"_qs, reading.sent, u"77"_qs}),
                  successReply(uR"({"entrustInfoList":[],"size":0,"totalSize":0})"_qs));
    }
}

TEST_F(DataThreadCallsTest, ExecutionListReadsTheFilterAndTwoIntegers)
{
    for (const auto &reading : integerReadings) {
        EXPECT_CALL(host, BusinessDataInterface_GetExecutionListByCustomKey(
                              Identical(QVariantMap{{Security::symbol, QStringList{u"S"_qs}}}), testing::Eq(0), 77,
                              reading.number, testing::IsEmpty()))
            .WillOnce(Return(QList<QVariantMap>()));
        EXPECT_EQ(answerTo("Data_getExecutionList_REQ", {uR"({"symbol":"S"})"_qs, 77, reading.sent}),
                  successReply(uR"({"executionInfoList":[],"size":0,"totalSize":0})"_qs));
    }
}

TEST_F(DataThreadCallsTest, PositionListReadsACommaListAndASymbol)
{
    const InSequence order;
    expectAccounts(host, u"f1"_qs, {});
    expectAccounts(host, QString(), {});
    expectAccounts(host, u" f2"_qs, {{u"f2"_qs, u"name"_qs, u"t2"_qs}});
    EXPECT_CALL(host, CBusinessDataBase_GetAccountDetailsByTradinngAccount(u"t2"_qs)).WillOnce(Return(QVariantMap()));
    const QVariantMap position{{Security::symbol, u"600000"_qs}};
    EXPECT_CALL(host, BusinessDataInterface_GetPositionListByAccount(_, QString(), u"600000"_qs, QString(), QString(),
                                                                     QString(), QString()))
        .WillOnce(Return(QList<QVariantMap>{position}));
    expectPosition(host, position, u"600000"_qs);
    EXPECT_EQ(resultOf(answerTo("Data_getPositionList_REQ", {u"f1,, f2"_qs, 600000})).toArray().size(), 1);

    for (const QVariant &nobody : {QVariant(), QVariant(QVariantList{u"f1"_qs, u"f2"_qs})}) {
        expectAccounts(host, QString(), {});
        EXPECT_EQ(answerTo("Data_getPositionList_REQ", {nobody, QString()}), successReply(u"[]"_qs));
    }
}

TEST_F(DataThreadCallsTest, AssetReadsAText)
{
    for (const auto &reading : textReadings) {
        expectAccounts(host, reading.text, {});
        EXPECT_EQ(answerTo("Data_getAsset_REQ", {reading.sent}), successReply(u"[]"_qs));
    }
}

TEST_F(DataThreadCallsTest, TradableQuantityReadsSevenTextsInTheirOrder)
{
    const QString huge(1 << 16, u'x');
    const InSequence order;
    expectAccounts(host, u"1"_qs, {{u"1"_qs, u"name"_qs, u"t1"_qs}});
    EXPECT_CALL(host, VarnelTradeLogic_queryMaxTradableQty(_)).WillOnce([&](const OrderRequestList &list) {
        EXPECT_EQ(list.Account(), u"t1"_qs);
        EXPECT_EQ(list.Tag(), QString());
        const VarnelLogic::OrderRequest line = list.Orders().value(0);
        EXPECT_EQ(line.symbol, hostile);
        EXPECT_EQ(line.orderQty, 0);
        EXPECT_EQ(line.priceType, u"five"_qs);
        EXPECT_EQ(line.price, u"7.25"_qs);
        EXPECT_EQ(line.side, u"true"_qs);
        EXPECT_EQ(line.exchange, huge);
        return u"100"_qs;
    });
    EXPECT_EQ(answerTo("Data_getTradableQty_REQ", {1, hostile, huge, true, u"five"_qs, 7.25, QVariant()}),
              successReply(uR"({"qty":"100"})"_qs));
}

TEST_F(DataThreadCallsTest, SettingsAreSavedAndReadAsTexts)
{
    EXPECT_EQ(answerTo("Data_getSetting_REQ", {u"number"_qs}), successReply(u"\"\""_qs));
    for (const auto &reading : textReadings) {
        const QString key = u"key of "_qs + reading.text;
        EXPECT_EQ(answerTo("Data_saveSetting_REQ", {key, reading.sent}), successReply(u"\"\""_qs));
        EXPECT_EQ(answerTo("Data_getSetting_REQ", {key}), successReply(u'"' + reading.text + u'"'));
    }
    EXPECT_EQ(answerTo("Data_saveSetting_REQ", {7, u"seven"_qs, u"surplus"_qs}), successReply(u"\"\""_qs));
    EXPECT_EQ(answerTo("Data_getSetting_REQ", {u"7"_qs}), successReply(u"\"seven\""_qs));
}

TEST_F(DataThreadCallsTest, PermissionReadsFundAccountAndSupportType)
{
    EXPECT_CALL(host, VarnelInitStateMgr_IsInited(_)).WillRepeatedly(Return(true));
    EXPECT_EQ(answerTo("Data_getPermission_REQ", {7, u"KFZ;SNB"_qs}), successReply(u"1"_qs));
    EXPECT_EQ(answerTo("Data_getPermission_REQ", {u"7"_qs, u"KFZ;SNB"_qs, u"surplus"_qs}), successReply(u"1"_qs));
    EXPECT_EQ(answerTo("Data_getPermission_REQ", {u"KFZ;SNB"_qs, 7}), successReply(u"0"_qs));
    EXPECT_EQ(answerTo("Data_getPermission_REQ", {QVariant(), QVariantMap()}), successReply(u"0"_qs));
    EXPECT_EQ(answerTo("Data_getPermission_REQ", {hostile, hostile}), successReply(u"0"_qs));
}

TEST_F(DataThreadCallsTest, PermissionMenuIsOpenedBeforeTheReply)
{
    EXPECT_CALL(host, BaseBusinessDataInterface_OpenMenuTabByMenuID(u"1210"_qs)).WillOnce([this] {
        EXPECT_TRUE(view.events().isEmpty());
    });
    EXPECT_EQ(answerTo("Data_openPermissionMenu_REQ", {u"9999"_qs}), successReply(u"\"\""_qs));
}

TEST_F(DataThreadCallsTest, RiseAndFallIsTheEmptyTextWhateverIsAsked)
{
    EXPECT_EQ(answerTo("Data_getUpsDownsAnalysis_REQ", {u"a"_qs, u"b"_qs, u"c"_qs}), QString());
    EXPECT_EQ(answerTo("Data_getUpsDownsAnalysis_REQ", {QVariant(), QVariantMap(), 7, hostile}), QString());
}

} // namespace
