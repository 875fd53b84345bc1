#pragma once

#include "HostApi.h"

#include <QVariant>

/// An event for the host bus. The library allocates it with new and hands it to
/// QvPresenterClass::PutEvent, which owns it from then on.
class VARNEL_HOST_API CEventMessageCommon {
public:
    CEventMessageCommon();
    virtual ~CEventMessageCommon();

    void SetType(const QVariant &type);
    void SetMsg(const QVariant &message);
    void SetSrcid(int pid); ///< the sender's QvPresenterClass::pluginPid()

    QVariant Type() const;
    QVariant Msg() const;
    int Srcid() const;

private:
    Q_DISABLE_COPY(CEventMessageCommon)
    QVariant m_type;
    QVariant m_message;
    int m_srcid = 0;
};
