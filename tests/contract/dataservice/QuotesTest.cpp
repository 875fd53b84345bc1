#include "DataServiceTest.h"

namespace {

class QuotesTest : public DataServiceTest {};

const QVariantMap quote{{u"last"_qs, 7.25},
                        {u"volume"_qs, qlonglong(1234567890123)},
                        {u"名 \"quoted\""_qs, u"浦江\n𝄞"_qs},
                        {u"absent"_qs, QVariant()},
                        {u"no number"_qs, qQNaN()},
                        {u"bids"_qs, QVariantList{7.24, 7.23}},
                        {u"uuid"_qs, u"the quote's own"_qs},
                        {QString(), true}};

const QString quoteText = uR"({"":true,"absent":null,"bids":[7.24,7.23],"last":7.25,"no number":null,)"
                          uR"("uuid":"the quote's own","volume":1234567890123,"名 \"quoted\"":"浦江\n𝄞"})"_qs;

TEST_F(QuotesTest, QuoteIsTheResultAsItIs)
{
    EXPECT_EQ(process->processTick(u"u1"_qs, u"S"_qs, quote, false), successReply(quoteText));
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(QuotesTest, BareQuoteHasNoEnvelope)
{
    EXPECT_EQ(process->processTick(u"u1"_qs, u"S"_qs, quote, true), quoteText);
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(QuotesTest, EmptyQuoteIsAnEmptyObject)
{
    EXPECT_EQ(process->processTick(u"u1"_qs, u"S"_qs, {}, false), successReply(u"{}"_qs));
    EXPECT_EQ(process->processTick(u"u1"_qs, u"S"_qs, {}, true), u"{}"_qs);
}

TEST_F(QuotesTest, SymbolIsNotUsed)
{
    EXPECT_EQ(process->processTick(u"u1"_qs, QString(), quote, false), successReply(quoteText));
    EXPECT_EQ(process->processTick(QString(), u"other"_qs, quote, true), quoteText);
}

TEST_F(QuotesTest, RiseAndFallIsTheEmptyTextWhateverIsAsked)
{
    EXPECT_EQ(process->processUpsDowns(u"u1"_qs, u"a"_qs, u"b"_qs, u"c"_qs), QString());
    EXPECT_EQ(process->processUpsDowns(QString(), QString(), QString(), QString()), QString());
    EXPECT_TRUE(log.lines().isEmpty());
}

} // namespace
