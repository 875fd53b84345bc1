#include "CEventMessageCommon.h"
#include "CMessageCommon.h"

// Requests and events are the same envelope under two names. The interface declares them as unrelated classes, so that
// only a macro can define both at once.
#define DEFINE_MESSAGE(Message)                   \
    Message::Message() = default;                 \
    Message::~Message() = default;                \
    void Message::SetType(const QVariant &type)   \
    {                                             \
        m_type = type;                            \
    }                                             \
    void Message::SetMsg(const QVariant &message) \
    {                                             \
        m_message = message;                      \
    }                                             \
    void Message::SetSrcid(int pid)               \
    {                                             \
        m_srcid = pid;                            \
    }                                             \
    QVariant Message::Type() const                \
    {                                             \
        return m_type;                            \
    }                                             \
    QVariant Message::Msg() const                 \
    {                                             \
        return m_message;                         \
    }                                             \
    int Message::Srcid() const                    \
    {                                             \
        return m_srcid;                           \
    }

DEFINE_MESSAGE(CMessageCommon)
DEFINE_MESSAGE(CEventMessageCommon)
