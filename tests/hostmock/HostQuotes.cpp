#include "HostQuotes.h"

#include "CommonQuotaHandler.h"
#include "HostMock.h"

namespace {

class MockQuotaHandler : public CommonQuotaHandler {
public:
    int SubscribeQuota(const QStringList &symbols, bool subscribe, int level) override
    {
        return HostMock::current(Q_FUNC_INFO).CommonQuotaHandler_SubscribeQuota(symbols, subscribe, level);
    }
    QMap<QString, QVariant> GetQuotaSnapshot(const QString &symbol, int level) override
    {
        return HostMock::current(Q_FUNC_INFO).CommonQuotaHandler_GetQuotaSnapshot(symbol, level);
    }
    int GetQtyUnit(const QString &symbol) override
    {
        return HostMock::current(Q_FUNC_INFO).CommonQuotaHandler_GetQtyUnit(symbol);
    }
    int tickReceivers() const { return receivers(SIGNAL(sigTickDataUpdate(QString, QVariantMap))); }
};

// Never destroyed: static objects may be connected to it.
MockQuotaHandler *handler()
{
    static auto *const self = new MockQuotaHandler;
    return self;
}

} // namespace

CommonQuotaHandler::CommonQuotaHandler(QObject *parent) : QObject(parent) {}

CommonQuotaHandler::~CommonQuotaHandler() = default;

CommonQuotaHandler *CommonQuotaHandler::instance()
{
    return handler();
}

void emitTick(const QString &symbol, const QVariantMap &data)
{
    emit handler()->sigTickDataUpdate(symbol, data);
}

int tickReceivers()
{
    return handler()->tickReceivers();
}
