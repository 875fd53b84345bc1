// The terminal must put here: its search for securities.
#include "VarnelBusiUtils.h"

QStringList VarnelBusiUtils::GetInputSymbolList(const QList<SymbolListType> &)
{
    return {};
}
