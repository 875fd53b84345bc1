// The terminal must put here: how it opens one of its menu tabs.
#include "BaseBusinessDataInterface.h"

void BaseBusinessDataInterface::OpenMenuTabByMenuID(const QString &) {}
