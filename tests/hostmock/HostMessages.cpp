#include "HostMessages.h"

#include <QSet>
#include <cstdio>
#include <cstdlib>
#include <mutex>

namespace {

[[noreturn]] void die(const char *reason)
{
    std::fprintf(stderr, "HostMock: %s\n", reason);
    std::abort();
}

// Keeps the addresses of the existing messages, so that a deleted one is noticed before it is used.
class MessageRegistry {
public:
    void add(const void *message)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_alive.insert(message);
    }
    void remove(const void *message)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (!m_alive.remove(message))
            die("a message was deleted that is not alive");
        ++m_deleted;
    }
    void check(const void *message) const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (!m_alive.contains(message))
            die("a message was handed over that is not alive");
    }
    int alive() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_alive.size();
    }
    int deleted() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_deleted;
    }

private:
    mutable std::mutex m_mutex;
    QSet<const void *> m_alive;
    int m_deleted = 0;
};

// Never destroyed: messages may outlive the statics of this library.
MessageRegistry &registry()
{
    static auto *const self = new MessageRegistry;
    return *self;
}

template <class Message>
MessageRecord take(Message *message)
{
    registry().check(message);
    MessageRecord record{message->Type(), message->Msg(), message->Srcid(), {}, {}};
    if (record.msg.userType() == qMetaTypeId<PackedMessage>()) {
        const auto body = record.msg.value<PackedMessage>();
        record.clientMsgId = body.clientMsgId;
        record.fields = body.rows.value(0);
    }
    delete message;
    return record;
}

} // namespace

int messagesAlive()
{
    return registry().alive();
}

int messagesDeleted()
{
    return registry().deleted();
}

MessageRecord takeMessage(CMessageCommon *message)
{
    return take(message);
}

MessageRecord takeMessage(CEventMessageCommon *message)
{
    return take(message);
}

// Requests and events are the same envelope under two names: one definition makes both. The mock has its own, apart
// from the simulator's, because its messages register themselves when they are made and when they are deleted.
#define DEFINE_MESSAGE(Message)                   \
    Message::Message()                            \
    {                                             \
        registry().add(this);                     \
    }                                             \
    Message::~Message()                           \
    {                                             \
        registry().remove(this);                  \
    }                                             \
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
