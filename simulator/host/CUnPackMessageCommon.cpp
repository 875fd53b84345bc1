#include "CUnPackMessageCommon.h"

#include "host/PackedRow.h"

class CUnPackMessageCommon::Private {
public:
    PackedRow row;
};

CUnPackMessageCommon::CUnPackMessageCommon() : d(new Private) {}

CUnPackMessageCommon::~CUnPackMessageCommon()
{
    delete d;
}

bool CUnPackMessageCommon::SetUnPackMsg(const QVariant &message, bool)
{
    const bool isRow = message.userType() == qMetaTypeId<PackedRow>();
    d->row = isRow ? message.value<PackedRow>() : PackedRow();
    return isRow;
}

QVariantMap CUnPackMessageCommon::GetRowValue()
{
    QVariantMap values;
    for (const auto &[key, value] : qAsConst(d->row))
        values.insert(key, value);
    return values;
}
