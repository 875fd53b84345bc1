#pragma once

#include <QString>

namespace sim {

/// Shows the address in the browser of the user's desktop. False when none could be started.
bool openInBrowser(const QString &address);

} // namespace sim
