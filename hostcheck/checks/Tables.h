#pragma once

#include "hostcheck/Check.h"

/// The checks of each topic, one function for each file beside this one.
namespace HostCheck {

CheckTable hostStartChecks();
CheckTable constantChecks();
CheckTable instanceChecks();
CheckTable viewChecks();
CheckTable packingChecks();
CheckTable packingTypeChecks();
CheckTable messageChecks();
CheckTable busChecks();
CheckTable presenterChecks();
CheckTable initStateChecks();
CheckTable loginChecks();
CheckTable accountChecks();
CheckTable unknownChecks();
CheckTable securityChecks();
CheckTable quoteChecks();
CheckTable kLineChecks();
CheckTable permissionChecks();
CheckTable strategyChecks();
CheckTable reportChecks();
CheckTable orderListChecks();
CheckTable orderQueryChecks();
CheckTable tradeChecks();
CheckTable threadChecks();
CheckTable hostEndChecks();

} // namespace HostCheck
