#include "Bus.h"
#include "CEventMessageCommon.h"
#include "CMessageCommon.h"
#include "CPackMessageCommon.h"
#include "CUnPackMessageCommon.h"
#include "Fault.h"
#include "Tessar_Fields.h"
#include "VarnelCefView.h"

#include <QVector>

#include <atomic>

// Requests and events are the same envelope under two names.
#define DEFINE_MESSAGE(Message, SenderFault)       \
    Message::Message() = default;                  \
    Message::~Message() = default;                 \
    void Message::SetType(const QVariant &type)    \
    {                                              \
        m_type = type;                             \
    }                                              \
    void Message::SetMsg(const QVariant &message)  \
    {                                              \
        m_message = message;                       \
    }                                              \
    void Message::SetSrcid(int pid)                \
    {                                              \
        m_srcid = hasFault(SenderFault) ? 0 : pid; \
    }                                              \
    QVariant Message::Type() const                 \
    {                                              \
        return m_type;                             \
    }                                              \
    QVariant Message::Msg() const                  \
    {                                              \
        return m_message;                          \
    }                                              \
    int Message::Srcid() const                     \
    {                                              \
        return m_srcid;                            \
    }

DEFINE_MESSAGE(CMessageCommon, "RequestLosesSender")
DEFINE_MESSAGE(CEventMessageCommon, "EventLosesSender")

// A packed message is a list of rows, a row is a map. The order of the fields does not matter to this host.

QVariant packed(const QVariantMap &row)
{
    return QVariantList{row};
}

QVariantMap unpacked(const QVariant &message)
{
    const QVariantList rows = message.toList();
    return rows.value(hasFault("SecondRowFirst") ? rows.size() - 1 : 0).toMap();
}

namespace {

/// The value as a host with a fault packs it; an invalid variant that was valid is left out.
QVariant packedValue(const QVariant &value)
{
    const auto isBroken = [&](int type, const char *fault) { return value.userType() == type && hasFault(fault); };
    if (isBroken(QMetaType::QString, "TextsTrimmed"))
        return value.toString().trimmed();
    if (isBroken(QMetaType::QString, "TextsInLatin1"))
        return QString::fromLatin1(value.toString().toLatin1());
    if (isBroken(QMetaType::QString, "EmptyTextsLost") && value.toString().isEmpty())
        return {};
    if (isBroken(QMetaType::Int, "IntegersUnsigned"))
        return value.toUInt();
    if (isBroken(QMetaType::LongLong, "LongIntegersAsDoubles"))
        return double(value.toLongLong());
    if (isBroken(QMetaType::Double, "DoublesRounded"))
        return QString::number(value.toDouble()).toDouble();
    if (isBroken(QMetaType::Bool, "BooleansAsNumbers"))
        return int(value.toBool());
    if (isBroken(QMetaType::UnknownType, "NullsAsTexts"))
        return QStringLiteral("null");
    if (isBroken(QMetaType::QByteArray, "BytesAsTexts"))
        return QString::fromUtf8(value.toByteArray());
    if (isBroken(QMetaType::QStringList, "ListsJoined"))
        return value.toStringList().join(QLatin1Char(','));
    if (isBroken(QMetaType::QVariantMap, "MapsLoseEmptyKeys")) {
        QVariantMap fields = value.toMap();
        fields.remove(QString());
        return fields;
    }
    if (isBroken(QMetaType::QVariantMap, "InnerListsLost")) {
        QVariantMap fields = value.toMap();
        for (QVariant &field : fields) {
            if (field.userType() == QMetaType::QVariantList)
                field = QVariant();
        }
        return fields;
    }
    if (isBroken(qMetaTypeId<VarnelCefView *>(), "ViewsAsNumbers"))
        return qulonglong(*static_cast<const quintptr *>(value.constData()));
    return value;
}

QString nextId()
{
    static std::atomic<int> last{0};
    thread_local int lastOfThread = 0;
    if (hasFault("NoClientId"))
        return {};
    return QString::number(hasFault("ClientIdsOfEachThread") ? ++lastOfThread : ++last);
}

} // namespace

class CPackMessageCommon::Private {
public:
    QVariantMap &fields() { return hasFault("MessagesShareFields") ? shared : own; }

    QVariantMap own;
    static thread_local QVariantMap shared;
};
thread_local QVariantMap CPackMessageCommon::Private::shared;

CPackMessageCommon::CPackMessageCommon() : d(new Private)
{
    d->fields() = {{Tessar_Fields::System::clientMsgID, nextId()}};
}

CPackMessageCommon::~CPackMessageCommon()
{
    delete d;
}

void CPackMessageCommon::AddVaule(const QString &key, const QVariant &value)
{
    const QVariant asPacked = packedValue(value);
    if (asPacked.isValid() || !value.isValid())
        d->fields().insert(key, asPacked);
}

QVariant CPackMessageCommon::GetValue(const QString &key) const
{
    if (hasFault("ValuesForgotten") && key != Tessar_Fields::System::clientMsgID)
        return {};
    return d->fields().value(key);
}

QVariant CPackMessageCommon::GetPackedMsg(int)
{
    return packed(d->fields());
}

class CUnPackMessageCommon::Private {
public:
    QVariantMap row;
};

CUnPackMessageCommon::CUnPackMessageCommon() : d(new Private) {}

CUnPackMessageCommon::~CUnPackMessageCommon()
{
    delete d;
}

bool CUnPackMessageCommon::SetUnPackMsg(const QVariant &message, bool)
{
    const QVariantMap row = unpacked(message);
    if (!hasFault("ReaderKeepsFields"))
        d->row.clear();
    for (auto field = row.cbegin(); field != row.cend(); ++field)
        d->row.insert(field.key(), *field);
    if (hasFault("EmptyMessageHasRow") && row.isEmpty())
        d->row.insert(QStringLiteral("invented"), true);
    return !row.isEmpty();
}

QVariantMap CUnPackMessageCommon::GetRowValue()
{
    return d->row;
}
