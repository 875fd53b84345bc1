#include "VarnelBusiUtils.h"

#include "SearchConstants.h"
#include "host/SecurityTypes.h"
#include "terminal/Terminal.h"
#include "traffic/Log.h"

#include <algorithm>

namespace {

/// An empty text or list admits every security.
bool isOf(const SymbolListType &wanted, const sim::Instrument &instrument)
{
    const auto admits = [](const QStringList &list, const QString &text) {
        return list.isEmpty() || list.contains(text);
    };
    return (wanted.securityType.isEmpty() || wanted.securityType == securityTypeText(instrument.kind)) &&
           admits(wanted.securitySubType, instrument.subType) && admits(wanted.securityPost, instrument.board);
}

} // namespace

QStringList VarnelBusiUtils::GetInputSymbolList(const QList<SymbolListType> &types)
{
    sim::traffic::log().hostCall("VarnelBusiUtils::GetInputSymbolList");
    QStringList entries;
    for (const sim::Instrument &instrument : sim::Terminal::instance().exchange().instruments()) {
        const auto isOfType = [&](const SymbolListType &wanted) { return isOf(wanted, instrument); };
        if (types.isEmpty() || std::any_of(types.begin(), types.end(), isOfType))
            entries.append(QStringList{instrument.symbol, instrument.name, instrument.spellCode}.join(
                Constants::SymbolSearch_Split));
    }
    return entries;
}
