#pragma once

#include "HostApi.h"
#include "HostTypes.h"

#include <QList>
#include <QStringList>

/// The host's search for securities.
class VARNEL_HOST_API VarnelBusiUtils {
public:
    /// The securities of the given classes as search entries, in the order in which the page shall list them: symbol,
    /// display name and spelling code joined by Constants::SymbolSearch_Split; the display name may contain the
    /// separator itself. Entries with fewer than three parts are left out. Which securities an empty list of classes
    /// means is the host's to decide. Called on the thread of a page call, possibly at once on several.
    static QStringList GetInputSymbolList(const QList<SymbolListType> &types);
};
