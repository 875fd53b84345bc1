#include "services/QuoteTicks.h"

#include "CommonQuotaHandler.h"
#include "services/QuoteFields.h"
#include "services/TimeTexts.h"

namespace sim {

namespace {

QVariantList pricesOf(const QVector<QuoteLevel> &levels)
{
    QVariantList prices;
    for (const QuoteLevel &level : levels)
        prices.append(level.price);
    return prices;
}

QVariantList qtysOf(const QVector<QuoteLevel> &levels)
{
    QVariantList qtys;
    for (const QuoteLevel &level : levels)
        qtys.append(level.qty);
    return qtys;
}

} // namespace

QVariantMap QuoteTicks::fieldsOf(const Quote &quote)
{
    return {
        {QuoteFields::symbol, quote.symbol},
        {QuoteFields::time, TimeTexts::write(quote.time)},
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

void QuoteTicks::emitTick(const Quote &quote)
{
    emit CommonQuotaHandler::instance()->sigTickDataUpdate(quote.symbol, fieldsOf(quote));
}

} // namespace sim
