#pragma once

#include "HostApi.h"

#include <QVariant>

/// A request for the host bus. The library allocates it with new and hands it to
/// QvPresenterClass::sendRequest_Async or sendRequest_Sync, which own it from then on.
class VARNEL_HOST_API CMessageCommon {
public:
    CMessageCommon();
    virtual ~CMessageCommon();

    void SetType(const QVariant &type);
    void SetMsg(const QVariant &message);
    void SetSrcid(int pid); ///< the sender's QvPresenterClass::pluginPid()

    QVariant Type() const;
    QVariant Msg() const;
    int Srcid() const;

private:
    Q_DISABLE_COPY(CMessageCommon)
    QVariant m_type;
    QVariant m_message;
    int m_srcid = 0;
};
