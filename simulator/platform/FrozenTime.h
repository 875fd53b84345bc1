#pragma once

#include "HostApi.h"

#include <QDateTime>

namespace sim {

/// While it exists, the time of this thread stands still at the given one, whatever the clock says.
class VARNEL_HOST_API FrozenTime {
public:
    explicit FrozenTime(const QDateTime &time);
    ~FrozenTime();

    /// That of this thread; null when it has none.
    static const QDateTime *current();

private:
    Q_DISABLE_COPY(FrozenTime)
    const QDateTime m_time;
    const QDateTime *const m_before;
};

} // namespace sim
