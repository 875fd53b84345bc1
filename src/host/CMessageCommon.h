#pragma once

#include "HostApi.h"

#include <QVariant>

/// A request for the host bus. The library allocates it with new and hands it to
/// QvPresenterClass::sendRequest_Async or sendRequest_Sync, which own it from then on.
class VARNEL_HOST_API CMessageCommon {
public:
    CMessageCommon();
    virtual ~CMessageCommon();

    void SetType(const QVariant &type);   ///< the kind of request, "KLineRequest"
    void SetMsg(const QVariant &message); ///< the body, of CPackMessageCommon::GetPackedMsg
    void SetSrcid(int pid);               ///< the sender's QvPresenterClass::pluginPid()

    QVariant Type() const; ///< for the host: what SetType was given; an invalid variant before
    QVariant Msg() const;  ///< for the host: what SetMsg was given; an invalid variant before
    int Srcid() const;     ///< for the host: what SetSrcid was given; 0 before

private:
    Q_DISABLE_COPY(CMessageCommon)
    QVariant m_type;
    QVariant m_message;
    int m_srcid = 0;
};
