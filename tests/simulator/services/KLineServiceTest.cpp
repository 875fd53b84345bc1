#include "TerminalTest.h"

#include "CMessageCommon.h"
#include "CPackMessageCommon.h"
#include "HostTypes.h"
#include "QvPresenterClass.h"
#include "Tessar_Fields.h"

#include <future>

using namespace sim;

namespace {

const QString kSymbol = QStringLiteral("609801.SH");

/// Requests candles as the library does.
class Asking : public QvPresenterClass {
public:
    Asking() : QvPresenterClass(QStringLiteral("asking"), nullptr, IMessageInterface::WebThreadType) {}

    CMessageCommon *request(const QString &symbol, const QString &start, const QString &stop, const QVariant &period)
    {
        CPackMessageCommon pack;
        pack.AddVaule(QStringLiteral("Symbol"), symbol);
        pack.AddVaule(QStringLiteral("StartTime"), start);
        pack.AddVaule(QStringLiteral("StopTime"), stop);
        pack.AddVaule(QStringLiteral("ExrightsType"), 10);
        pack.AddVaule(QStringLiteral("PeriodType"), period);
        lastId = pack.GetValue(Tessar_Fields::System::clientMsgID).toString();
        auto *message = new CMessageCommon;
        message->SetType(QStringLiteral("KLineRequest"));
        message->SetMsg(pack.GetPackedMsg(0));
        message->SetSrcid(pluginPid());
        return message;
    }

    QVariantList candles(const QString &symbol, const QString &start, const QString &stop, const QVariant &period)
    {
        QVariant reply;
        EXPECT_EQ(0, sendRequest_Sync(request(symbol, start, stop, period), reply));
        return reply.toList();
    }

    void ProcQuotationMsg(QString, QVariant type, QVariant data) override { answer.set_value({type, data.toList()}); }

    QString lastId;
    std::promise<std::pair<QVariant, QVariantList>> answer; ///< type and candles of the first answer
};

class KLineServiceTest : public TerminalTest {
protected:
    QStringList times(const char *start, const char *stop, int period = DayKLinePeriod)
    {
        QStringList list;
        const QVariantList candles = asking.candles(kSymbol, QLatin1String(start), QLatin1String(stop), period);
        for (const QVariant &candle : candles)
            list.append(candle.toMap().value(QStringLiteral("time")).toString());
        return list;
    }

    Asking asking;
};

} // namespace

TEST_F(KLineServiceTest, EveryCandleOfAnAsynchronousAnswerHasTheIdOfTheRequest)
{
    ASSERT_EQ(0, asking.sendRequest_Async(asking.request(kSymbol, QString(), QString(), MinuteKLinePeriod)));
    std::future<std::pair<QVariant, QVariantList>> future = asking.answer.get_future();
    ASSERT_EQ(std::future_status::ready, future.wait_for(std::chrono::seconds(30)));
    const auto [type, candles] = future.get();
    EXPECT_EQ(QVariant(QStringLiteral("KLineResponse")), type);
    ASSERT_EQ(2000, candles.size());
    EXPECT_FALSE(asking.lastId.isEmpty());
    for (const QVariant &candle : candles)
        ASSERT_EQ(asking.lastId, candle.toMap().value(Tessar_Fields::System::clientMsgID).toString());
}

TEST_F(KLineServiceTest, ACandleHasTheDocumentedFields)
{
    const QVariantList candles =
        asking.candles(kSymbol, QStringLiteral("20250228"), QStringLiteral("20250228"), DayKLinePeriod);
    ASSERT_EQ(1, candles.size());
    const QVariantMap candle = candles[0].toMap();
    EXPECT_EQ(QStringList({QStringLiteral("amount"), QStringLiteral("clientMsgID"), QStringLiteral("close"),
                           QStringLiteral("high"), QStringLiteral("low"), QStringLiteral("open"),
                           QStringLiteral("symbol"), QStringLiteral("time"), QStringLiteral("volume")}),
              candle.keys());
    EXPECT_EQ(QVariant(kSymbol), candle.value(QStringLiteral("symbol")));
    EXPECT_EQ(QVariant(QStringLiteral("20250228")), candle.value(QStringLiteral("time")));
    EXPECT_EQ(QVariant(scenario.securities[0].price), candle.value(QStringLiteral("close")));
}

TEST_F(KLineServiceTest, ABareDateMeansTheWholeDay)
{
    EXPECT_EQ(QStringList({QStringLiteral("20250227"), QStringLiteral("20250228")}), times("20250227", "20250228"));
    EXPECT_EQ(480, times("20250227", "20250228", MinuteKLinePeriod).size());
}

TEST_F(KLineServiceTest, ATimeMeansThatSecond)
{
    EXPECT_EQ(QStringList({QStringLiteral("20250227093100"), QStringLiteral("20250227093200")}),
              times("20250227093100", "20250227093259", MinuteKLinePeriod));
    EXPECT_EQ(QStringList(QStringLiteral("20250228")), times("20250227150001", "20250228150000"));
}

TEST_F(KLineServiceTest, AnEmptyTextLeavesTheRangeOpen)
{
    EXPECT_EQ(QStringList({QStringLiteral("20250227"), QStringLiteral("20250228")}), times("20250227", ""));
    EXPECT_EQ(2000, times("", "20250228").size());
}

TEST_F(KLineServiceTest, AnInvalidRangeGivesNoCandles)
{
    for (const char *bad : {"2025-02-27", "20250230", "2025022", "202502271500", "20250227250000", "now", "        ",
                            "              ", "+2025227", "99999999999999"}) {
        EXPECT_EQ(QStringList(), times(bad, "")) << bad;
        EXPECT_EQ(QStringList(), times("", bad)) << bad;
    }
    EXPECT_EQ(QStringList(), times("20250228", "20250227"));
}

TEST_F(KLineServiceTest, UnknownSymbolsAndPeriodsGiveNoCandles)
{
    EXPECT_TRUE(asking.candles(QStringLiteral("nothing"), QString(), QString(), DayKLinePeriod).isEmpty());
    EXPECT_TRUE(asking.candles(kSymbol, QString(), QString(), 3).isEmpty());
    EXPECT_TRUE(asking.candles(kSymbol, QString(), QString(), QVariant()).isEmpty());
}
