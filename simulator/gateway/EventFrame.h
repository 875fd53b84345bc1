#pragma once

#include "QCefEvent.h"

namespace sim {

/// The text frame for an event: {"args":[…],"event":"…"}
QString eventFrame(const QCefEvent &event);

} // namespace sim
