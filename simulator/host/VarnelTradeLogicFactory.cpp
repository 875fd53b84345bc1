#include "VarnelTradeLogicFactory.h"

#include "Tessar_Fields.h"
#include "host/TradeResponses.h"
#include "terminal/Terminal.h"
#include "traffic/Log.h"

namespace {

using namespace sim;

constexpr int kAnswered = 0;
constexpr int kUnknownRequest = -1;

} // namespace

VarnelTradeLogicFactory *VarnelTradeLogicFactory::GetInstance()
{
    static VarnelTradeLogicFactory factory;
    return &factory;
}

// The caller is unnamed: every caller gets the same answer.

int VarnelTradeLogicFactory::SendRequestSync(const Basic_Trade_REQ_Type &type, const QVariant &request, const QString &,
                                             QVariant &response)
{
    traffic::log().hostCall("VarnelTradeLogicFactory::SendRequestSync");
    using namespace Tessar_Fields;
    if (type != CancelOrdersTradeRequest)
        return kUnknownRequest;
    Terminal &terminal = Terminal::instance();
    terminal.awaitSlowServer();
    const QVariantList entries = request.value<QVariantList>(); // reads QVariantList and QList<QVariantMap>
    std::vector<TradingDesk::CancelRequest> cancels;
    cancels.reserve(size_t(entries.size()));
    for (const QVariant &entry : entries) {
        const QVariantMap fields = entry.toMap();
        cancels.push_back({fields.value(Security::orderID).toString(),
                           fields.value(UserAccount::tradingAccount).toString(),
                           terminal.faults().take(Fault::LateCancels)});
    }
    const QStringList reasons = terminal.desk().cancel(cancels, terminal.now());
    QList<QMap<QString, QVariant>> answers;
    for (int i = 0; i < reasons.size(); ++i)
        answers.append(tradeResponse(cancels[size_t(i)].orderId, reasons[i]));
    response = QVariant::fromValue(answers);
    return kAnswered;
}
