#include "dataservice/BondInterest.h"

#include "common/WebConstants.h"

#include "QvBondDataMgr.h"
#include "Tessar_Fields.h"
#include "Tessar_Values.h"

double bondInterest(const QString &symbol, const QVariantMap &details)
{
    const QString type = details.value(Tessar_Fields::MDCFieldDefine::mdcSecurityType).toString();
    if (type != Tessar_Values::MdcSecurityType::BondType)
        return 0.0;
    stuBaseInfo info;
    const QString result = QvBondDataMgr::instance()->GetSingelBondBaseInfo(symbol, info);
    return result == WebConstants::Code::success ? info.interest : 0.0;
}
