// The terminal must put here: its quotes.
#include "CommonQuotaHandler.h"

CommonQuotaHandler::CommonQuotaHandler(QObject *parent) : QObject(parent) {}

CommonQuotaHandler::~CommonQuotaHandler() = default;

namespace {

/// Accepts every subscription and never has a quote.
class NoQuotes : public CommonQuotaHandler {
public:
    int SubscribeQuota(const QStringList &, bool, int) override { return 0; }
    QMap<QString, QVariant> GetQuotaSnapshot(const QString &, int) override { return {}; }
    int GetQtyUnit(const QString &) override { return 0; }
};

} // namespace

CommonQuotaHandler *CommonQuotaHandler::instance()
{
    static auto *const handler = new NoQuotes; // never deleted: it must be valid until the process ends
    return handler;
}
