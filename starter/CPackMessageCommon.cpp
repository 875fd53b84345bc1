// The terminal must put here: its packer of messages, together with the unpacker.
#include "CPackMessageCommon.h"

#include "Tessar_Fields.h"

#include <atomic>

/// A packed message is a list of fields in the order of their adding. A field is a list of its key and its value.
class CPackMessageCommon::Private {
public:
    QVariantList fields;
};

CPackMessageCommon::CPackMessageCommon() : d(new Private)
{
    static std::atomic<int> lastId{0};
    AddVaule(Tessar_Fields::System::clientMsgID, QString::number(++lastId));
}

CPackMessageCommon::~CPackMessageCommon()
{
    delete d;
}

void CPackMessageCommon::AddVaule(const QString &key, const QVariant &value)
{
    d->fields.append(QVariant(QVariantList{key, value}));
}

QVariant CPackMessageCommon::GetValue(const QString &key) const
{
    // From the end, because the value that was added last counts for the unpacker, too.
    for (auto field = d->fields.crbegin(); field != d->fields.crend(); ++field) {
        const QVariantList keyAndValue = field->toList();
        if (keyAndValue.first() == key)
            return keyAndValue.last();
    }
    return {};
}

QVariant CPackMessageCommon::GetPackedMsg(int)
{
    return d->fields;
}
