#include "CommonQuotaHandler.h"

#include "terminal/Terminal.h"
#include "services/QuoteTicks.h"

CommonQuotaHandler::CommonQuotaHandler(QObject *parent) : QObject(parent) {}

CommonQuotaHandler::~CommonQuotaHandler() = default;

namespace {

constexpr int kAccepted = 0;

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
        return quote ? sim::QuoteTicks::fieldsOf(*quote) : QVariantMap();
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
