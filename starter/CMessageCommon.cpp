// The terminal must put here: what its bus keeps with requests. This file does if type, body and sender are all.
#include "CMessageCommon.h"

CMessageCommon::CMessageCommon() = default;

CMessageCommon::~CMessageCommon() = default;

void CMessageCommon::SetType(const QVariant &type)
{
    m_type = type;
}

void CMessageCommon::SetMsg(const QVariant &message)
{
    m_message = message;
}

void CMessageCommon::SetSrcid(int pid)
{
    m_srcid = pid;
}

QVariant CMessageCommon::Type() const
{
    return m_type;
}

QVariant CMessageCommon::Msg() const
{
    return m_message;
}

int CMessageCommon::Srcid() const
{
    return m_srcid;
}
