// The terminal must put here: what its bus keeps with events. This file does if type, body and sender are all.
#include "CEventMessageCommon.h"

CEventMessageCommon::CEventMessageCommon() = default;

CEventMessageCommon::~CEventMessageCommon() = default;

void CEventMessageCommon::SetType(const QVariant &type)
{
    m_type = type;
}

void CEventMessageCommon::SetMsg(const QVariant &message)
{
    m_message = message;
}

void CEventMessageCommon::SetSrcid(int pid)
{
    m_srcid = pid;
}

QVariant CEventMessageCommon::Type() const
{
    return m_type;
}

QVariant CEventMessageCommon::Msg() const
{
    return m_message;
}

int CEventMessageCommon::Srcid() const
{
    return m_srcid;
}
