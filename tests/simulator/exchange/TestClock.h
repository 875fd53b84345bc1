#pragma once

#include "exchange/Clock.h"

/// The exchange time "2025-03-03 10:00:00".
inline QDateTime at(const char *text)
{
    QDateTime time = QDateTime::fromString(QLatin1String(text), QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    time.setTimeSpec(Qt::UTC);
    return time;
}

/// A clock that keeps its time until it is set.
class TestClock : public sim::Clock {
public:
    explicit TestClock(const QDateTime &time) : m_time(time) {}

    QDateTime now() const override { return m_time; }
    void set(const QDateTime &time) { m_time = time; }

private:
    QDateTime m_time;
};
