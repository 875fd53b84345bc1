#include "Await.h"
#include "TerminalTest.h"

#include "CommonQuotaHandler.h"
#include "services/QuoteFields.h"

#include <mutex>
#include <thread>
#include <vector>

namespace {

const QString kSymbol = QStringLiteral("609801.SH");

class QuoteTicksTest : public TerminalTest {
protected:
    static constexpr double kTickingSpeed = 100;

    QuoteTicksTest() : TerminalTest(kTickingSpeed)
    {
        // Called on the emitting thread.
        connection = QObject::connect(&quotes, &CommonQuotaHandler::sigTickDataUpdate,
                                      [this](const QString &symbol, const QVariantMap &data) {
                                          const std::lock_guard lock(mutex);
                                          ticks.emplace_back(symbol, data);
                                          thread = std::this_thread::get_id();
                                      });
    }

    ~QuoteTicksTest() override
    {
        terminal.quoteFeed().stop(); // otherwise a tick could arrive after the disconnection
        QObject::disconnect(connection);
    }

    /// At least n ticks.
    std::vector<QPair<QString, QVariantMap>> awaitTicks(size_t n)
    {
        const auto all = [&] {
            const std::lock_guard lock(mutex);
            return ticks;
        };
        EXPECT_TRUE(await([&] { return all().size() >= n; }));
        return all();
    }

    CommonQuotaHandler &quotes = *CommonQuotaHandler::instance();
    QMetaObject::Connection connection;
    std::mutex mutex;
    std::vector<QPair<QString, QVariantMap>> ticks; ///< guarded by mutex, and so is the next
    std::thread::id thread;
};

} // namespace

TEST_F(QuoteTicksTest, TicksHaveTheFieldsOfASnapshotAndComeOnTheFeedsThread)
{
    const QStringList fields = quotes.GetQuotaSnapshot(kSymbol, 0).keys();
    EXPECT_EQ(0, quotes.SubscribeQuota({kSymbol}, true, 0));
    const auto all = awaitTicks(3);
    for (const auto &[symbol, data] : all) {
        EXPECT_EQ(kSymbol, symbol);
        EXPECT_EQ(fields, data.keys());
        EXPECT_EQ(QVariant(kSymbol), data.value(QuoteFields::symbol));
        EXPECT_EQ(5, data.value(QuoteFields::bidPrices).toList().size());
    }
    EXPECT_LT(all[1].second.value(QuoteFields::time).toString(), all[2].second.value(QuoteFields::time).toString());
    const std::lock_guard lock(mutex);
    EXPECT_NE(std::this_thread::get_id(), thread);
}

TEST_F(QuoteTicksTest, ASubscriptionCanBeEnded)
{
    const QString other = QStringLiteral("YL2503.CF");
    quotes.SubscribeQuota({kSymbol, other, QStringLiteral("unknown")}, true, 0);
    awaitTicks(2);
    EXPECT_EQ(0, quotes.SubscribeQuota({kSymbol}, false, 0));
    const size_t before = awaitTicks(2).size() + 2; // the ticks of the current step may have come
    const auto all = awaitTicks(before + 2);
    for (size_t i = before; i < all.size(); ++i)
        EXPECT_EQ(other, all[i].first);
}
