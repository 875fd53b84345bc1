#include "VarnelBusinessDataInterface.h"

#include "Tessar_Fields.h"
#include "host/SecurityTypes.h"
#include "terminal/Terminal.h"
#include "traffic/Log.h"

namespace {

using namespace sim;

const Instrument *listed(const QString &symbol)
{
    return Terminal::instance().exchange().instrument(symbol);
}

} // namespace

// Some texts and maps are unnamed: the library always leaves them empty.

QString VarnelBusinessDataInterface::GetSymbolBySecurityIDAndExchange(const QString &securityId,
                                                                      const QString &exchange)
{
    traffic::log().hostCall("VarnelBusinessDataInterface::GetSymbolBySecurityIDAndExchange");
    const Instrument *instrument = Terminal::instance().exchange().instrumentOf(securityId, exchange);
    return instrument ? instrument->symbol : QString();
}

QVariantMap VarnelBusinessDataInterface::GetSecurityDetailsBySymbol(const QString &symbol)
{
    traffic::log().hostCall("VarnelBusinessDataInterface::GetSecurityDetailsBySymbol");
    using namespace Tessar_Fields;
    const Instrument *instrument = listed(symbol);
    if (!instrument)
        return {};
    return {{Security::symbol, instrument->symbol},
            {Security::securityID, instrument->securityId},
            {UserAccount::securityExchange, instrument->exchange},
            {Security::chineseName, instrument->name},
            {Security::spellCode, instrument->spellCode},
            {Security::priceLimitType, instrument->limitRate > 0},
            {MDCFieldDefine::mdcSecurityType, securityTypeText(instrument->kind)}};
}

int VarnelBusinessDataInterface::GetPricePrecisionBySymbol(const QString &symbol, const QString &)
{
    traffic::log().hostCall("VarnelBusinessDataInterface::GetPricePrecisionBySymbol");
    const Instrument *instrument = listed(symbol);
    return instrument ? instrument->decimals : 0;
}

double VarnelBusinessDataInterface::GetPriceUnitBySymbol(const QString &symbol, double defaultUnit, const QString &)
{
    traffic::log().hostCall("VarnelBusinessDataInterface::GetPriceUnitBySymbol");
    const Instrument *instrument = listed(symbol);
    return instrument ? instrument->tick : defaultUnit;
}

int VarnelBusinessDataInterface::GetQtyStepBySymbol(const QString &symbol)
{
    traffic::log().hostCall("VarnelBusinessDataInterface::GetQtyStepBySymbol");
    const Instrument *instrument = listed(symbol);
    return instrument ? int(instrument->lot) : 0;
}

qint64 VarnelBusinessDataInterface::GetMinQtyPerOrderBySymbol(const QString &symbol)
{
    traffic::log().hostCall("VarnelBusinessDataInterface::GetMinQtyPerOrderBySymbol");
    const Instrument *instrument = listed(symbol);
    return instrument ? instrument->minQty : 0;
}

qint64 VarnelBusinessDataInterface::GetMaxQtyPerOrderBySymbol(const QString &symbol, const QVariantMap &)
{
    traffic::log().hostCall("VarnelBusinessDataInterface::GetMaxQtyPerOrderBySymbol");
    const Instrument *instrument = listed(symbol);
    return instrument ? instrument->maxQty : 0;
}

QString VarnelBusinessDataInterface::GetSecurityTypeBySymbol(const QString &symbol)
{
    traffic::log().hostCall("VarnelBusinessDataInterface::GetSecurityTypeBySymbol");
    const Instrument *instrument = listed(symbol);
    return instrument ? securityTypeText(instrument->kind) : QString();
}

QString VarnelBusinessDataInterface::GetSecuritySubTypeBySymbol(const QString &symbol)
{
    traffic::log().hostCall("VarnelBusinessDataInterface::GetSecuritySubTypeBySymbol");
    const Instrument *instrument = listed(symbol);
    return instrument ? instrument->subType : QString();
}
