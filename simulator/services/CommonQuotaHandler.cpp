#include "CommonQuotaHandler.h"

CommonQuotaHandler::CommonQuotaHandler(QObject *parent) : QObject(parent) {}

CommonQuotaHandler::~CommonQuotaHandler() = default;

namespace {

/// The simulated exchange has a history but does not stream quotes yet: it says so to whoever asks.
class NoQuotes : public CommonQuotaHandler {
public:
    int SubscribeQuota(const QStringList &, bool, int) override { return -1; }
    QMap<QString, QVariant> GetQuotaSnapshot(const QString &, int) override { return {}; }
    int GetQtyUnit(const QString &) override { return 1; } // quantities are single shares or contracts
};

} // namespace

CommonQuotaHandler *CommonQuotaHandler::instance()
{
    // Never destroyed: the library's singletons are connected to it until the very end of the process.
    static auto *const handler = new NoQuotes;
    return handler;
}
