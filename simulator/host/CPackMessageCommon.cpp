#include "CPackMessageCommon.h"

#include "Tessar_Fields.h"

#include <QVariantList>

#include <atomic>

namespace {

QString nextClientMsgId()
{
    static std::atomic<qint64> last{0};
    return QString::number(++last);
}

} // namespace

/// A packed message is a list of rows. A row is a list of fields in the order in which they were added. A field is a
/// list of key and value. A packer makes one row.
class CPackMessageCommon::Private {
public:
    QVariantList row;
};

CPackMessageCommon::CPackMessageCommon() : d(new Private)
{
    AddVaule(Tessar_Fields::System::clientMsgID, nextClientMsgId());
}

CPackMessageCommon::~CPackMessageCommon()
{
    delete d;
}

void CPackMessageCommon::AddVaule(const QString &key, const QVariant &value)
{
    d->row.append(QVariant(QVariantList{key, value}));
}

QVariant CPackMessageCommon::GetValue(const QString &key) const
{
    // From the end: of a key that was added twice the last value counts.
    for (auto field = d->row.crbegin(); field != d->row.crend(); ++field) {
        const QVariantList pair = field->toList();
        if (pair.first() == key)
            return pair.last();
    }
    return {};
}

QVariant CPackMessageCommon::GetPackedMsg(int)
{
    return QVariantList{QVariant(d->row)};
}
