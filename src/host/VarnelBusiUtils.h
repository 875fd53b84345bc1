#pragma once

#include "HostApi.h"
#include "HostTypes.h"

#include <QList>
#include <QStringList>

class VARNEL_HOST_API VarnelBusiUtils {
public:
    /// The securities of the given classes as search entries: symbol, display name and spelling code
    /// joined by Constants::SymbolSearch_Split; the display name may contain the separator itself. Which
    /// securities an empty class list means is the host's to decide. Called on the thread of a page call.
    static QStringList GetInputSymbolList(const QList<SymbolListType> &types);
};
