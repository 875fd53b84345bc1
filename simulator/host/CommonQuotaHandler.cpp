#include "CommonQuotaHandler.h"

#include "services/QuoteTicks.h"
#include "terminal/Terminal.h"
#include "traffic/Log.h"

CommonQuotaHandler::CommonQuotaHandler(QObject *parent) : QObject(parent) {}

CommonQuotaHandler::~CommonQuotaHandler() = default;

namespace {

constexpr int kAccepted = 0;

/// The quotes of the simulated exchange. The level argument is ignored: every quote has five price levels.
class Quotes : public CommonQuotaHandler {
public:
    int SubscribeQuota(const QStringList &symbols, bool subscribe, int) override
    {
        sim::traffic::log().hostCall("CommonQuotaHandler::SubscribeQuota");
        sim::QuoteFeed &feed = sim::Terminal::instance().quoteFeed();
        if (subscribe)
            feed.stream(symbols);
        else
            feed.stopStreaming(symbols);
        return kAccepted;
    }

    QMap<QString, QVariant> GetQuotaSnapshot(const QString &symbol, int) override
    {
        sim::traffic::log().hostCall("CommonQuotaHandler::GetQuotaSnapshot");
        const std::optional<sim::Quote> quote = sim::Terminal::instance().quote(symbol);
        return quote ? sim::QuoteTicks::fieldsOf(*quote) : QVariantMap();
    }

    int GetQtyUnit(const QString &symbol) override
    {
        sim::traffic::log().hostCall("CommonQuotaHandler::GetQtyUnit");
        // Quantities are counted in single shares, bonds and contracts.
        return sim::Terminal::instance().exchange().instrument(symbol) ? 1 : 0;
    }
};

} // namespace

CommonQuotaHandler *CommonQuotaHandler::instance()
{
    // Never destroyed: the library's singletons stay connected to it until the process ends.
    static auto *const handler = new Quotes;
    return handler;
}
