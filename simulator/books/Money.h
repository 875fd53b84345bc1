#pragma once

#include <QtGlobal>

#include <cmath>

namespace sim {

/// An amount of money in whole cents, so that sums and differences are exact.
/// A plain value.
class Money {
public:
    constexpr Money() = default;

    /// To the nearest cent. Clamped to +-10^18 cents, so that sums cannot overflow.
    static Money rounded(double yuan)
    {
        Money money;
        money.m_cents = std::llround(qBound(-kMostCents, yuan * kCentsPerYuan, kMostCents));
        return money;
    }

    /// The double nearest to the amount.
    double yuan() const { return double(m_cents) / kCentsPerYuan; }

    Money part(double ofOne) const { return rounded(yuan() * ofOne); }

    Money operator-() const { return Money() - *this; }
    Money &operator+=(Money other)
    {
        m_cents += other.m_cents;
        return *this;
    }
    Money &operator-=(Money other)
    {
        m_cents -= other.m_cents;
        return *this;
    }
    friend Money operator+(Money a, Money b) { return a += b; }
    friend Money operator-(Money a, Money b) { return a -= b; }
    friend bool operator==(Money a, Money b) { return a.m_cents == b.m_cents; }
    friend bool operator!=(Money a, Money b) { return a.m_cents != b.m_cents; }
    friend bool operator<(Money a, Money b) { return a.m_cents < b.m_cents; }
    friend bool operator<=(Money a, Money b) { return a.m_cents <= b.m_cents; }

private:
    static constexpr int kCentsPerYuan = 100;
    static constexpr double kMostCents = 1e18;

    qint64 m_cents = 0;
};

} // namespace sim
