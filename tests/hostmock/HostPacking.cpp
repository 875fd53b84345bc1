#include "CPackMessageCommon.h"
#include "CUnPackMessageCommon.h"
#include "HostMessages.h"
#include "Tessar_Fields.h"

#include <atomic>
#include <gtest/gtest.h>

namespace {

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
