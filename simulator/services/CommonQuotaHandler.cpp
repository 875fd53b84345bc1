#include "CommonQuotaHandler.h"

#include "platform/Terminal.h"
#include "services/QuoteFields.h"
#include "services/QuoteTicks.h"

CommonQuotaHandler::CommonQuotaHandler(QObject *parent) : QObject(parent) {}

CommonQuotaHandler::~CommonQuotaHandler() = default;

namespace {

constexpr int kAccepted = 0;

QVariantList pricesOf(const QVector<sim::QuoteLevel> &levels)
{
    QVariantList prices;
    for (const sim::QuoteLevel &level : levels)
        prices.append(level.price);
    return prices;
}

QVariantList qtysOf(const QVector<sim::QuoteLevel> &levels)
{
    QVariantList qtys;
    for (const sim::QuoteLevel &level : levels)
        qtys.append(level.qty);
    return qtys;
}

QVariantMap fieldsOf(const sim::Quote &quote)
{
    return {
        {QuoteFields::symbol, quote.symbol},
        {QuoteFields::time, quote.time.toString(QStringLiteral("yyyyMMddHHmmss"))},
        {QuoteFields::previousClose, quote.previousClose},
        {QuoteFields::open, quote.open},
        {QuoteFields::high, quote.high},
        {QuoteFields::low, quote.low},
        {QuoteFields::last, quote.last},
        {QuoteFields::upperLimit, quote.upperLimit},
        {QuoteFields::lowerLimit, quote.lowerLimit},
        {QuoteFields::volume, quote.volume},
        {QuoteFields::amount, quote.amount},
        {QuoteFields::bidPrices, pricesOf(quote.bids)},
        {QuoteFields::bidQtys, qtysOf(quote.bids)},
        {QuoteFields::askPrices, pricesOf(quote.asks)},
        {QuoteFields::askQtys, qtysOf(quote.asks)},
    };
}

/// The simulated exchange's quotes. There is one level, of all five prices.
class Quotes : public CommonQuotaHandler {
public:
    int SubscribeQuota(const QStringList &symbols, bool subscribe, int) override
    {
        sim::QuoteFeed &feed = sim::Terminal::instance().quoteFeed();
        if (subscribe)
            feed.stream(symbols);
        else
            feed.stopStreaming(symbols);
        return kAccepted;
    }

    QMap<QString, QVariant> GetQuotaSnapshot(const QString &symbol, int) override
    {
        const std::optional<sim::Quote> quote = sim::Terminal::instance().exchange().quote(symbol);
        return quote ? fieldsOf(*quote) : QVariantMap();
    }

    int GetQtyUnit(const QString &symbol) override
    {
        // Quantities are counted in single shares, bonds and contracts.
        return sim::Terminal::instance().exchange().instrument(symbol) ? 1 : 0;
    }
};

} // namespace

CommonQuotaHandler *CommonQuotaHandler::instance()
{
    // Never destroyed: the library's singletons are connected to it until the very end of the process.
    static auto *const handler = new Quotes;
    return handler;
}

void sim::QuoteTicks::emitTick(const Quote &quote)
{
    emit CommonQuotaHandler::instance()->sigTickDataUpdate(quote.symbol, fieldsOf(quote));
}
