#pragma once

#include "HostApi.h"
#include "HostTypes.h"

#include <QString>

/// The host's bond data. Safe to call from any thread; the host owns the instance.
class VARNEL_HOST_API QvBondDataMgr {
public:
    /// Never null; valid until the process ends.
    static QvBondDataMgr *instance();

    /// Fills info for one bond and returns "0"; any other text means that info is not to be used, and pages get the
    /// interest 0. Asked for securities whose type is Tessar_Values::MdcSecurityType::BondType, on threads of page
    /// calls and on the message center's thread.
    QString GetSingelBondBaseInfo(const QString &symbol, stuBaseInfo &info);
};
