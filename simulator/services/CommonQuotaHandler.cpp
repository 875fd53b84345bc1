#include "CommonQuotaHandler.h"

#include "platform/Terminal.h"
#include "services/QuoteFields.h"

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

/// The simulated exchange's quotes. Snapshots only: nothing is streamed, so a subscription is accepted and that is
/// all that happens.
class Quotes : public CommonQuotaHandler {
public:
    int SubscribeQuota(const QStringList &, bool, int) override { return kAccepted; }

    QMap<QString, QVariant> GetQuotaSnapshot(const QString &symbol, int) override // there is one level: all five prices
    {
        const std::optional<sim::Quote> quote = sim::Terminal::instance().exchange().quote(symbol);
        if (!quote)
            return {};
        return {
            {QuoteFields::symbol, quote->symbol},
            {QuoteFields::time, quote->time.toString(QStringLiteral("yyyyMMddHHmmss"))},
            {QuoteFields::previousClose, quote->previousClose},
            {QuoteFields::open, quote->open},
            {QuoteFields::high, quote->high},
            {QuoteFields::low, quote->low},
            {QuoteFields::last, quote->last},
            {QuoteFields::upperLimit, quote->upperLimit},
            {QuoteFields::lowerLimit, quote->lowerLimit},
            {QuoteFields::volume, quote->volume},
            {QuoteFields::amount, quote->amount},
            {QuoteFields::bidPrices, pricesOf(quote->bids)},
            {QuoteFields::bidQtys, qtysOf(quote->bids)},
            {QuoteFields::askPrices, pricesOf(quote->asks)},
            {QuoteFields::askQtys, qtysOf(quote->asks)},
        };
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
