#include "platform/QuoteFeed.h"
#include "Await.h"
#include "TerminalTest.h"

#include <QSemaphore>

using namespace sim;

namespace {

constexpr int kPatienceMs = 30000;

const QString kOne = QStringLiteral("609801.SH");
const QString kOther = QStringLiteral("YL2503.CF");

QDateTime exchangeTime(int day, int hour, int minute, int second)
{
    return QDateTime(QDate(2025, 3, day), QTime(hour, minute, second), Qt::UTC);
}

/// A quote feed over the market of the built-in scenario, and all that it reports.
class QuoteFeedTest : public testing::Test {
protected:
    struct Tick {
        Quote quote;
        QDateTime step; ///< the latest step reported before it, if any
    };

    void start(const QDateTime &time, double speed)
    {
        QString error;
        Scenario scenario;
        ASSERT_TRUE(Scenario::read(Scenario::defaultFile(), scenario, error)) << qPrintable(error);
        clock = std::make_unique<SimulatedClock>(time, speed);
        exchange = std::make_unique<Exchange>(scenario.securities, scenario.seed, scenario.start.date(), *clock);
        feed = std::make_unique<QuoteFeed>(
            *exchange, *clock,
            [this](const QDateTime &step) {
                const std::lock_guard lock(mutex);
                m_steps.push_back(step);
                m_stepTold.release();
            },
            [this](const Quote &quote) {
                const std::lock_guard lock(mutex);
                m_ticks.push_back({quote, m_steps.empty() ? QDateTime() : m_steps.back()});
                m_tickTold.release();
            });
    }

    std::vector<Tick> ticks()
    {
        const std::lock_guard lock(mutex);
        return m_ticks;
    }

    /// The first n steps. Does not run the event loop, so that ticks stay unacknowledged.
    std::vector<QDateTime> awaitSteps(int n)
    {
        EXPECT_TRUE(m_stepTold.tryAcquire(n, kPatienceMs));
        m_stepTold.release(n);
        const std::lock_guard lock(mutex);
        return m_steps;
    }

    bool awaitTickWithoutEventLoop() { return m_tickTold.tryAcquire(1, kPatienceMs); }

    /// At least n ticks.
    std::vector<Tick> awaitTicks(size_t n)
    {
        EXPECT_TRUE(await([&] { return ticks().size() >= n; }));
        return ticks();
    }

    std::unique_ptr<SimulatedClock> clock;
    std::unique_ptr<Exchange> exchange;
    std::mutex mutex;
    std::unique_ptr<QuoteFeed> feed; ///< last of these: its listeners use the others

private:
    QSemaphore m_stepTold;
    QSemaphore m_tickTold;
    std::vector<QDateTime> m_steps; ///< guarded by mutex, and so are the ticks
    std::vector<Tick> m_ticks;
};

} // namespace

TEST_F(QuoteFeedTest, AStreamedSymbolTicksAtOnceAndThenWithEachStep)
{
    start(exchangeTime(3, 10, 0, 0), 60);
    feed->stream({kOne});
    const std::vector<Tick> all = awaitTicks(4);
    for (size_t i = 0; i < all.size(); ++i) {
        const Quote &quote = all[i].quote;
        EXPECT_EQ(kOne, quote.symbol);
        EXPECT_EQ(exchange->quote(kOne, quote.time)->last, quote.last);
        if (i > 0) {
            EXPECT_LT(all[i - 1].quote.time, quote.time);
            EXPECT_EQ(all[i].step, quote.time) << "a step is reported before its ticks";
        }
    }
}

TEST_F(QuoteFeedTest, OnlyStreamedAndKnownSymbolsTick)
{
    start(exchangeTime(3, 10, 0, 0), 60);
    feed->stream({QStringLiteral("unknown"), kOther, QString(), kOne, kOther});
    const std::vector<Tick> all = awaitTicks(4);
    QStringList symbols;
    for (size_t i = 0; i < 4; ++i)
        symbols.append(all[i].quote.symbol);
    EXPECT_EQ(QStringList({kOne, kOther, kOne, kOther}), symbols);
}

TEST_F(QuoteFeedTest, StoppedSymbolsDoNotTick)
{
    start(exchangeTime(3, 10, 0, 0), 300);
    feed->stream({kOne, kOther});
    awaitTicks(2);
    feed->stopStreaming({kOne, QStringLiteral("unknown")});
    const size_t before = ticks().size();
    const std::vector<Tick> all = awaitTicks(before + 4);
    // The ticks of the current step may still have come.
    for (size_t i = before + 2; i < all.size(); ++i)
        EXPECT_EQ(kOther, all[i].quote.symbol);
}

TEST_F(QuoteFeedTest, ASymbolThatIsStreamedAgainTicksAtOnce)
{
    // In the evening nothing else makes it tick.
    start(exchangeTime(3, 18, 0, 0), 1);
    feed->stream({kOne});
    awaitTicks(1);
    feed->stream({kOne});
    const std::vector<Tick> all = awaitTicks(2);
    EXPECT_EQ(exchangeTime(3, 15, 0, 0), all[0].quote.time);
    EXPECT_EQ(exchangeTime(3, 15, 0, 0), all[1].quote.time);
}

TEST_F(QuoteFeedTest, ThereIsNoStepWhileTheExchangeIsClosed)
{
    // From the last minute of a Friday over the weekend, in a fraction of a second.
    start(exchangeTime(7, 14, 59, 30), 500000);
    for (std::vector<QDateTime> steps = awaitSteps(1); steps.back() < exchangeTime(10, 9, 30, 3);)
        steps = awaitSteps(int(steps.size()) + 1);
    const std::vector<QDateTime> steps = awaitSteps(1);
    for (size_t i = 0; i < steps.size(); ++i) {
        const QTime time = steps[i].time();
        EXPECT_TRUE(steps[i].date().dayOfWeek() <= Qt::Friday);
        EXPECT_TRUE((time >= QTime(9, 0) && time <= QTime(11, 30)) || (time > QTime(13, 0) && time <= QTime(16, 0)))
            << qPrintable(time.toString());
        if (i > 0) {
            EXPECT_LT(steps[i - 1], steps[i]);
        }
    }
}

TEST_F(QuoteFeedTest, NothingTicksAfterTheClose)
{
    start(exchangeTime(7, 15, 0, 0), 300);
    feed->stream({kOne});
    awaitTicks(1); // the quote at once
    EXPECT_GE(awaitSteps(5).back(), exchangeTime(7, 15, 5, 3));
    QCoreApplication::processEvents(); // a tick would be waiting
    EXPECT_EQ(1u, ticks().size());
}

TEST_F(QuoteFeedTest, MissedStepsAreSkipped)
{
    // Time runs faster than steps are reported: each report has the latest step.
    start(exchangeTime(3, 10, 0, 0), 10000);
    const QDateTime before = clock->now();
    const std::vector<QDateTime> steps = awaitSteps(4);
    EXPECT_GT(before.secsTo(steps[3]), 4 * 3);
    EXPECT_LE(steps[3], clock->now());
}

TEST_F(QuoteFeedTest, ABusyThreadGetsOnlyTheLatestTicks)
{
    start(exchangeTime(3, 10, 0, 0), 300);
    feed->stream({kOne});
    ASSERT_TRUE(awaitTickWithoutEventLoop());
    const QDateTime last = awaitSteps(5)[4];
    EXPECT_EQ(1u, ticks().size()) << "this thread has not handled the first one";
    EXPECT_GE(awaitTicks(2)[1].quote.time, last);
}

TEST_F(QuoteFeedTest, AfterStopNoListenerIsCalled)
{
    start(exchangeTime(3, 10, 0, 0), 1000);
    feed->stream({kOne, kOther});
    awaitTicks(2);
    feed->stop();
    const size_t before = ticks().size();
    feed->stream({kOne});
    QCoreApplication::processEvents();
    EXPECT_EQ(before, ticks().size());
}

TEST_F(QuoteFeedTest, ASlowClockDoesNotDelayTheEnd)
{
    start(exchangeTime(3, 10, 0, 0), 1e-6);
    feed->stream({kOne});
    awaitTicks(1);
    feed.reset();
    EXPECT_EQ(1u, ticks().size());
}
