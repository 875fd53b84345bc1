#include "CUnPackMessageCommon.h"

#include <QVariantList>

class CUnPackMessageCommon::Private {
public:
    QVariantList rows;
};

CUnPackMessageCommon::CUnPackMessageCommon() : d(new Private) {}

CUnPackMessageCommon::~CUnPackMessageCommon()
{
    delete d;
}

bool CUnPackMessageCommon::SetUnPackMsg(const QVariant &message, bool)
{
    d->rows = message.toList(); // the format is described in CPackMessageCommon.cpp
    return !d->rows.isEmpty();
}

QVariantMap CUnPackMessageCommon::GetRowValue()
{
    QVariantMap values;
    if (d->rows.isEmpty())
        return values;
    const QVariantList row = d->rows.first().toList();
    for (const QVariant &field : row) {
        const QVariantList pair = field.toList();
        if (pair.size() == 2)
            values.insert(pair.first().toString(), pair.last());
    }
    return values;
}
