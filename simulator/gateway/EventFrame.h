#pragma once

#include "QCefEvent.h"

namespace sim {

/// The text of the frame that brings an event to a page: {"args":[…],"event":"…"}
QString eventFrame(const QCefEvent &event);

} // namespace sim
