#include "DataServiceTest.h"

#include "SearchConstants.h"
#include "Tessar_Fields.h"

#include <limits>

using testing::_;
using testing::InSequence;

namespace {

using namespace Tessar_Fields;

const QString refused = refusal(u"过滤条件参数转换错误"_qs);

/// A search entry of these parts.
QString entry(const QStringList &parts)
{
    return parts.join(Constants::SymbolSearch_Split);
}

class SecuritiesTest : public DataServiceTest {
protected:
    /// Expects a search for exactly these classes: type, sub-types and boards of each.
    void expectSearch(const QVariantList &classes, const QStringList &entries)
    {
        EXPECT_CALL(host, VarnelBusiUtils_GetInputSymbolList(_))
            .WillOnce([classes, entries](const QList<SymbolListType> &asked) {
                QVariantList seen;
                for (const SymbolListType &one : asked)
                    seen.append(QVariant(QVariantList{one.securityType, one.securitySubType, one.securityPost}));
                EXPECT_THAT(QVariant(seen), Identical(QVariant(classes)));
                return entries;
            });
    }

    QJsonObject detailOf(const QString &symbol, const SecurityAnswers &answers)
    {
        expectSecurity(host, symbol, answers);
        return resultOf(process->processSymbolDetail(u"u1"_qs, symbol)).toArray().first().toObject();
    }
};

// The search

TEST_F(SecuritiesTest, ClassesOfTheFilterReachTheSearchInTheirOrder)
{
    const QString filter = uR"({"symbolFilter":[)"
                           uR"({"securityType":"stock","securitySubType":["A","B"],"securityPost":["main","科创"]},)"
                           uR"({"securityType":"bond"},)"
                           uR"({"securitySubType":"single","securityPost":[1,null],"securityType":7},)"
                           uR"("no object",null,5,[],{}],"other":[{"securityType":"x"}]})"_qs;
    const auto nothing = QVariant(QVariantList{QString(), QStringList(), QStringList()});
    const QVariantList classes{
        QVariantList{u"stock"_qs, QStringList{u"A"_qs, u"B"_qs}, QStringList{u"main"_qs, u"科创"_qs}},
        QVariantList{u"bond"_qs, QStringList(), QStringList()},
        QVariantList{u"7"_qs, QStringList{u"single"_qs}, QStringList{u"1"_qs, QString()}},
        nothing,
        nothing,
        nothing,
        nothing,
        nothing};
    expectSearch(classes, {});
    EXPECT_EQ(process->processSymbolList(u"u1"_qs, filter), successReply(u"[]"_qs));
    expectSearch(classes, {});
    EXPECT_EQ(process->processSymbolListWithDetail(u"u1"_qs, filter), successReply(u"[]"_qs));
}

TEST_F(SecuritiesTest, FiltersWithoutClassesStillAskTheHost)
{
    for (const char *filter :
         {"{}", "[]", R"([{"symbolFilter":[{}]}])", R"({"symbolFilter":[]})", R"({"symbolFilter":"text"})",
          R"({"symbolFilter":{"securityType":"a"}})", R"({"symbolfilter":[{}]})"}) {
        expectSearch({}, {entry({u"S"_qs, u"名"_qs, u"M"_qs})});
        EXPECT_EQ(process->processSymbolList(u"u1"_qs, QString::fromUtf8(filter)),
                  successReply(uR"([{"displayName":"名","spellName":"M","symbol":"S"}])"_qs))
            << filter;
    }
}

TEST_F(SecuritiesTest, FiltersThatAreNoJsonTextAreRefusedAndTheHostIsNotAsked)
{
    for (const QVariant &filter :
         {QVariant(QString()), QVariant(u"abc"_qs), QVariant(u"null"_qs), QVariant(u"[1"_qs), QVariant(), QVariant(7),
          QVariant(QVariantMap{{u"symbolFilter"_qs, QVariantList()}}), QVariant(QVariantList())}) {
        log.clear();
        EXPECT_EQ(process->processSymbolList(u"u1"_qs, filter), refused);
        expectOnlyLine(QtWarningMsg, u"processSymbolList"_qs, u"过滤条件参数转换错误 QVariant("_qs);
        log.clear();
        EXPECT_EQ(process->processSymbolListWithDetail(u"u1"_qs, filter), refused);
        expectOnlyLine(QtWarningMsg, u"processSymbolListWithDetail"_qs, u"过滤条件参数转换错误 QVariant("_qs);
    }
    log.clear();
    process->processSymbolList(u"u1"_qs, u"the filter itself"_qs);
    EXPECT_EQ(log.linesWith(u"the filter itself"_qs).size(), 1);
}

TEST_F(SecuritiesTest, EntriesAreSplitIntoSymbolNameAndSpelling)
{
    const QString separator = Constants::SymbolSearch_Split;
    expectSearch({}, {entry({u"B.SH"_qs, u"浦江银行"_qs, u"PJYH"_qs}), entry({u"A"_qs, u"x"_qs, u"y"_qs, u"z"_qs}),
                      entry({u"one"_qs}), entry({u"two"_qs, u"parts"_qs}), QString(), separator,
                      entry({QString(), QString(), QString()}), entry({u"A"_qs, QString(), u"y"_qs, u"z"_qs})});
    EXPECT_EQ(process->processSymbolList(u"u1"_qs, u"{}"_qs),
              successReply(uR"([{"displayName":"浦江银行","spellName":"PJYH","symbol":"B.SH"},)"
                           uR"({"displayName":"x%1y","spellName":"z","symbol":"A"},)"
                           uR"({"displayName":"","spellName":"","symbol":""},)"
                           uR"({"displayName":"%1y","spellName":"z","symbol":"A"}])"_qs.arg(separator)));
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(SecuritiesTest, SeparatorIsTheWholeTextOfTheHosts)
{
    // The mock's separator has three characters: one of them alone splits nothing.
    expectSearch({}, {u"a|b|c"_qs, u"a<b<c"_qs, entry({u"S"_qs, u"a|b"_qs, u"c"_qs})});
    EXPECT_EQ(process->processSymbolList(u"u1"_qs, u"{}"_qs),
              successReply(uR"([{"displayName":"a|b","spellName":"c","symbol":"S"}])"_qs));
}

// The details

TEST_F(SecuritiesTest, DetailRecordHoldsThePropertiesOfTheSecurity)
{
    SecurityAnswers answers;
    answers.details = {{Security::symbol, u"shown"_qs},      {Security::securityID, 600000},
                       {UserAccount::securityExchange, 1},   {Security::chineseName, u"浦江银行"_qs},
                       {Security::spellCode, u"PJYH"_qs},    {Security::priceLimitType, 1},
                       {u"not looked at"_qs, u"anything"_qs}};
    expectSecurity(host, u"asked"_qs, answers);
    EXPECT_EQ(process->processSymbolDetail(u"u1"_qs, u"asked"_qs),
              successReply(uR"([{"displayName":"浦江银行","exchange":"1","maxQty":"1000000","minQty":"100",)"
                           uR"("precision":12,"priceLimitType":true,"priceUnit":0.013,"qtyPrecision":15,)"
                           uR"("qtyStep":14,"qtyUnit":11,"securityId":"600000","securitySubType":"sub-type",)"
                           uR"("securityType":"type","spellName":"PJYH","stockInterest":0,"symbol":"shown"}])"_qs));
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(SecuritiesTest, UnknownSecurityHasEmptyPropertiesAndTheHostsAnswers)
{
    expectSecurity(host, u"nobody's"_qs);
    EXPECT_EQ(process->processSymbolDetail(u"u1"_qs, u"nobody's"_qs),
              successReply(uR"([{"displayName":"","exchange":"","maxQty":"1000000","minQty":"100","precision":12,)"
                           uR"("priceLimitType":false,"priceUnit":0.013,"qtyPrecision":15,"qtyStep":14,"qtyUnit":11,)"
                           uR"("securityId":"","securitySubType":"sub-type","securityType":"type","spellName":"",)"
                           uR"("stockInterest":0,"symbol":""}])"_qs));
}

TEST_F(SecuritiesTest, PriceLimitTypeIsABoolean)
{
    const struct {
        QVariant detail;
        bool expected;
    } values[] = {{true, true},     {false, false},       {0, false},      {2, true},
                  {u"0"_qs, false}, {u"false"_qs, false}, {u"1"_qs, true}, {QString(), false}};
    for (const auto &value : values) {
        SecurityAnswers answers;
        answers.details = {{Security::priceLimitType, value.detail}};
        EXPECT_EQ(detailOf(u"S"_qs, answers).value(u"priceLimitType"_qs), QJsonValue(value.expected))
            << qPrintable(value.detail.toString());
    }
}

TEST_F(SecuritiesTest, QuantityLimitsAreWholeNumbersAsTexts)
{
    const struct {
        qint64 quantity;
        const char16_t *text;
    } limits[] = {{0, u"0"},
                  {-100, u"-100"},
                  {100, u"100"},
                  {123456789012345, u"123456789012345"},
                  {std::numeric_limits<qint64>::max(), u"9223372036854775808"}}; // through a double
    for (const auto &limit : limits) {
        SecurityAnswers answers;
        answers.minQty = limit.quantity;
        EXPECT_EQ(detailOf(u"S"_qs, answers).value(u"minQty"_qs), QJsonValue(QString::fromUtf16(limit.text)));
        answers.minQty = 1;
        answers.maxQty = limit.quantity;
        EXPECT_EQ(detailOf(u"S"_qs, answers).value(u"maxQty"_qs), QJsonValue(QString::fromUtf16(limit.text)));
    }
}

TEST_F(SecuritiesTest, InterestIsThatOfABondWhoseDataCouldBeRead)
{
    const InSequence order;
    SecurityAnswers bond;
    bond.details = bondDetails();
    for (const char *result : {"0", "1", ""}) {
        expectSecurity(host, u"bond"_qs, bond);
        expectBond(host, u"bond"_qs, QString::fromLatin1(result), 3.125);
        const QJsonArray records = resultOf(process->processSymbolDetail(u"u1"_qs, u"bond"_qs)).toArray();
        EXPECT_EQ(records.first().toObject().value(u"stockInterest"_qs), qstrcmp(result, "0") == 0 ? 3.125 : 0.0);
    }
}

TEST_F(SecuritiesTest, EveryPartBetweenCommasIsARecordInItsOrder)
{
    const InSequence order;
    for (const char *symbol : {"B", "", " A"})
        expectSecurity(host, QString::fromLatin1(symbol), {{{Security::symbol, QString::fromLatin1(symbol)}}});
    const QJsonArray records = resultOf(process->processSymbolDetail(u"u1"_qs, u"B,, A"_qs)).toArray();
    ASSERT_EQ(records.size(), 3);
    EXPECT_EQ(records.at(0).toObject().value(u"symbol"_qs), u"B"_qs);
    EXPECT_EQ(records.at(1).toObject().value(u"symbol"_qs), QString());
    EXPECT_EQ(records.at(2).toObject().value(u"symbol"_qs), u" A"_qs);

    expectSecurity(host, QString());
    EXPECT_EQ(resultOf(process->processSymbolDetail(u"u1"_qs, QString())).toArray().size(), 1);
}

TEST_F(SecuritiesTest, ListWithDetailsKeepsOnlyTheSymbolOfTheEntry)
{
    const InSequence order;
    expectSearch({}, {entry({u"A"_qs, u"entry's name"_qs, u"entry's spelling"_qs}), entry({u"two"_qs, u"parts"_qs}),
                      entry({u"B"_qs, u"x"_qs, u"y"_qs, u"z"_qs})});
    SecurityAnswers answers;
    answers.details = {{Security::symbol, u"details' symbol"_qs}, {Security::chineseName, u"名"_qs}};
    expectSecurity(host, u"A"_qs, answers);
    answers.details = bondDetails();
    expectSecurity(host, u"B"_qs, answers);
    expectBond(host, u"B"_qs, u"0"_qs, 4.5);
    EXPECT_EQ(process->processSymbolListWithDetail(u"u1"_qs, u"{}"_qs),
              successReply(uR"([{"displayName":"名","exchange":"","maxQty":"1000000","minQty":"100","precision":12,)"
                           uR"("priceLimitType":false,"priceUnit":0.013,"qtyPrecision":15,"qtyStep":14,"qtyUnit":11,)"
                           uR"("securityId":"","securitySubType":"sub-type","securityType":"type","spellName":"",)"
                           uR"("stockInterest":0,"symbol":"A"},)"
                           uR"({"displayName":"","exchange":"","maxQty":"1000000","minQty":"100","precision":12,)"
                           uR"("priceLimitType":false,"priceUnit":0.013,"qtyPrecision":15,"qtyStep":14,"qtyUnit":11,)"
                           uR"("securityId":"","securitySubType":"sub-type","securityType":"type","spellName":"",)"
                           uR"("stockInterest":4.5,"symbol":"B"}])"_qs));
    EXPECT_TRUE(log.lines().isEmpty());
}

} // namespace
