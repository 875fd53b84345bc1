#include "HostTypes.h"

#include "HostApi.h"

namespace HostTypes {

VARNEL_HOST_API void all(tagUserAccountInfo, SymbolListType, VarnelLogic::ResponseInfo, EMD_KLINE_PERIOD);

/// Brings the types that the host's operations only name inside a list, or not at all, into the description.
void all(tagUserAccountInfo, SymbolListType, VarnelLogic::ResponseInfo, EMD_KLINE_PERIOD) {}

} // namespace HostTypes
