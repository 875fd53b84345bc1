#include "VarnelUtils.h"

ShowType VarnelUtils::GetCurrentShowType()
{
    return PlainShowType; // the simulated terminal has no other display mode
}
