// The terminal must put here: its unpacker of messages, together with the packer.
#include "CUnPackMessageCommon.h"

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
    d->row.clear();
    const QVariantList fields = message.toList(); // CPackMessageCommon.cpp describes the form
    for (const QVariant &field : fields) {
        const QVariantList keyAndValue = field.toList();
        if (keyAndValue.size() == 2)
            d->row.insert(keyAndValue.first().toString(), keyAndValue.last());
    }
    return !d->row.isEmpty();
}

QVariantMap CUnPackMessageCommon::GetRowValue()
{
    return d->row;
}
