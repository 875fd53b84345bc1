#include "BaseBusinessDataInterface.h"

#include "platform/Logging.h"
#include "traffic/Log.h"

namespace {

const QString kPermissionMenu = QStringLiteral("1210");

} // namespace

void BaseBusinessDataInterface::OpenMenuTabByMenuID(const QString &menuId)
{
    sim::traffic::log().hostCall("BaseBusinessDataInterface::OpenMenuTabByMenuID");
    // The simulated terminal has no menus: the log tells page developers that the page asked for one.
    qCInfo(terminalLog, "the page opens menu %s%s", qUtf8Printable(menuId),
           menuId == kPermissionMenu ? " (permissions)" : "");
}
