#pragma once

#include "HostApi.h"

#include <QVariant>

/// An event for the host bus. The library allocates it with new and hands it to
/// QvPresenterClass::PutEvent, which owns it from then on.
class VARNEL_HOST_API CEventMessageCommon {
public:
    CEventMessageCommon();
    virtual ~CEventMessageCommon();

    void SetType(const QVariant &type);   ///< the event's id, an integer
    void SetMsg(const QVariant &message); ///< the body, of CPackMessageCommon::GetPackedMsg
    void SetSrcid(int pid);               ///< the sender's QvPresenterClass::pluginPid()

    QVariant Type() const; ///< for the host: what SetType was given; an invalid variant before
    QVariant Msg() const;  ///< for the host: what SetMsg was given; an invalid variant before
    int Srcid() const;     ///< for the host: what SetSrcid was given; 0 before

private:
    Q_DISABLE_COPY(CEventMessageCommon)
    QVariant m_type;
    QVariant m_message;
    int m_srcid = 0;
};
