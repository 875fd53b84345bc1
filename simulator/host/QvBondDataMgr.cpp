#include "QvBondDataMgr.h"

#include "terminal/Terminal.h"
#include "traffic/Log.h"

namespace {

const QString kFound = QStringLiteral("0"); // required by the interface
const QString kNoBond = QStringLiteral("-1");

} // namespace

QvBondDataMgr *QvBondDataMgr::instance()
{
    static QvBondDataMgr manager;
    return &manager;
}

QString QvBondDataMgr::GetSingelBondBaseInfo(const QString &symbol, stuBaseInfo &info)
{
    sim::traffic::log().hostCall("QvBondDataMgr::GetSingelBondBaseInfo");
    const sim::Instrument *bond = sim::Terminal::instance().exchange().instrument(symbol);
    if (!bond || bond->kind != sim::SecurityKind::Bond)
        return kNoBond;
    info = {bond->symbol, bond->name, bond->interest};
    return kFound;
}
