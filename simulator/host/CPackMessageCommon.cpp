#include "CPackMessageCommon.h"

#include "Tessar_Fields.h"
#include "platform/PackedRow.h"

#include <algorithm>
#include <atomic>

namespace {

constexpr int kUsualFields = 32;

QString nextClientMsgId()
{
    static std::atomic<qint64> last{0};
    return QString::number(++last);
}

} // namespace

class CPackMessageCommon::Private {
public:
    PackedRow row;
};

CPackMessageCommon::CPackMessageCommon() : d(new Private)
{
    d->row.reserve(kUsualFields);
    AddVaule(Tessar_Fields::System::clientMsgID, nextClientMsgId());
}

CPackMessageCommon::~CPackMessageCommon()
{
    delete d;
}

void CPackMessageCommon::AddVaule(const QString &key, const QVariant &value)
{
    d->row.append({key, value});
}

QVariant CPackMessageCommon::GetValue(const QString &key) const
{
    // From the end: of a key that was added twice the last value counts.
    const auto found =
        std::find_if(d->row.crbegin(), d->row.crend(), [&](const auto &field) { return field.first == key; });
    return found == d->row.crend() ? QVariant() : found->second;
}

QVariant CPackMessageCommon::GetPackedMsg(int)
{
    return QVariant::fromValue(d->row);
}
