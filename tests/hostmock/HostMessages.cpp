#include "HostMessages.h"

#include "CPackMessageCommon.h"
#include "CUnPackMessageCommon.h"
#include "OrderRequestList.h"
#include "Tessar_Fields.h"

#include <QSet>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <mutex>

namespace {

[[noreturn]] void die(const char *reason)
{
    std::fprintf(stderr, "HostMock: %s\n", reason);
    std::abort();
}

// Knows messages by address, so that a dead one is found out before it is touched.
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

// Never destroyed: messages may outlive every static of this library.
MessageRegistry &registry()
{
    static auto *const self = new MessageRegistry;
    return *self;
}

std::atomic<int> lastMessageNumber{0};

QString clientMessageId(int number)
{
    return QStringLiteral("mock-message-%1").arg(number);
}

MessageFields fieldsOf(const QVariantMap &row)
{
    MessageFields fields;
    for (auto it = row.cbegin(); it != row.cend(); ++it)
        fields.append({it.key(), it.value()});
    return fields;
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

QVariant packedRows(const QList<QVariantMap> &rows)
{
    PackedMessage body;
    for (const QVariantMap &row : rows)
        body.rows.append(fieldsOf(row));
    return QVariant::fromValue(body);
}

QVariant packedRow(const QVariantMap &row)
{
    return packedRows({row});
}

QString nextClientMessageId(int ahead)
{
    return clientMessageId(lastMessageNumber + 1 + ahead);
}

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

// CMessageCommon

CMessageCommon::CMessageCommon()
{
    registry().add(this);
}
CMessageCommon::~CMessageCommon()
{
    registry().remove(this);
}
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

// CEventMessageCommon

CEventMessageCommon::CEventMessageCommon()
{
    registry().add(this);
}
CEventMessageCommon::~CEventMessageCommon()
{
    registry().remove(this);
}
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

// CPackMessageCommon

class CPackMessageCommon::Private {
public:
    QString clientMsgId;
    MessageFields fields;
};

CPackMessageCommon::CPackMessageCommon() : d(new Private{clientMessageId(++lastMessageNumber), {}}) {}

CPackMessageCommon::~CPackMessageCommon()
{
    delete d;
}

void CPackMessageCommon::AddVaule(const QString &key, const QVariant &value)
{
    d->fields.append({key, value});
}

QVariant CPackMessageCommon::GetValue(const QString &key) const
{
    for (const auto &field : qAsConst(d->fields)) {
        if (field.first == key)
            return field.second;
    }
    return key == Tessar_Fields::System::clientMsgID ? QVariant(d->clientMsgId) : QVariant();
}

QVariant CPackMessageCommon::GetPackedMsg(int format)
{
    EXPECT_EQ(format, 0) << "CPackMessageCommon::GetPackedMsg";
    return QVariant::fromValue(PackedMessage{d->clientMsgId, {d->fields}});
}

// CUnPackMessageCommon

class CUnPackMessageCommon::Private {
public:
    QVariantMap row;
};

CUnPackMessageCommon::CUnPackMessageCommon() : d(new Private) {}

CUnPackMessageCommon::~CUnPackMessageCommon()
{
    delete d;
}

bool CUnPackMessageCommon::SetUnPackMsg(const QVariant &message, bool flag)
{
    EXPECT_FALSE(flag) << "CUnPackMessageCommon::SetUnPackMsg";
    d->row.clear();
    if (message.userType() != qMetaTypeId<PackedMessage>())
        return false;
    const MessageFields first = message.value<PackedMessage>().rows.value(0);
    for (const auto &field : first)
        d->row.insert(field.first, field.second);
    return true;
}

QVariantMap CUnPackMessageCommon::GetRowValue()
{
    return d->row;
}
