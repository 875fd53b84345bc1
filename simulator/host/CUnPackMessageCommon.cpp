#include "CUnPackMessageCommon.h"

#include "platform/PackedRow.h"

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
    // Of a message with several rows only the first is read.
    const QVariant first = message.userType() == QMetaType::QVariantList ? message.toList().value(0) : message;
    const bool isRow = first.userType() == qMetaTypeId<PackedRow>();
    d->row = isRow ? first.value<PackedRow>() : PackedRow();
    return isRow;
}

QVariantMap CUnPackMessageCommon::GetRowValue()
{
    QVariantMap values;
    for (const auto &[key, value] : qAsConst(d->row))
        values.insert(key, value);
    return values;
}
