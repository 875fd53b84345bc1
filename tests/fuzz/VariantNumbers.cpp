#include "VariantParts.h"

#include <cmath>
#include <limits>

namespace {

double neighbour(Decisions &decisions, double value)
{
    const int steps = decisions.below(5) - 2;
    for (int step = 0; step < qAbs(steps); ++step)
        value = std::nextafter(value, steps < 0 ? -HUGE_VAL : HUGE_VAL);
    return value;
}

double special(Decisions &decisions)
{
    using Limits = std::numeric_limits<double>;
    static const double values[] = {
        0.0,     Limits::denorm_min(), Limits::min(),      Limits::max(), Limits::lowest(), Limits::epsilon(), 0.1,
        1.0 / 3, Limits::infinity(),   Limits::quiet_NaN()};
    return decisions.oneOf(values);
}

/// Up to as many decimal digits as mean anything in a double, and more.
QByteArray digits(Decisions &decisions)
{
    const int count = 1 + decisions.below(20);
    return QByteArray::number(decisions.bits<quint64>()).left(count);
}

double decimal(const QByteArray &digits, int exponent)
{
    return (digits + 'e' + QByteArray::number(exponent)).toDouble();
}

/// As prices and amounts are: up to six decimals, in all digits that a double has or in fewer.
double price(Decisions &decisions)
{
    const int decimals = decisions.below(7);
    return decimal(digits(decisions), -decimals);
}

/// Where the plain form ends and the one with an exponent begins.
double withAnExponentPerhaps(Decisions &decisions)
{
    const int exponent = decisions.below(64) - 32;
    return decimal(digits(decisions), exponent);
}

double withAnExponent(Decisions &decisions)
{
    const int exponent = decisions.below(680) - 345;
    return decimal(digits(decisions), exponent);
}

double nearPowerOfTwo(Decisions &decisions)
{
    const int exponent = decisions.oneIn(2) ? decisions.below(2098) - 1074 : decisions.below(16) + 50;
    return neighbour(decisions, std::ldexp(1.0, exponent));
}

/// Near an end of a type, or of what a double holds exactly.
quint64 nearAnEnd(Decisions &decisions)
{
    static const int powers[] = {7, 8, 15, 16, 31, 32, 53, 54, 62, 63};
    const quint64 end = quint64(1) << decisions.oneOf(powers);
    return end + quint64(decisions.below(9)) - 4;
}

template <class T>
QVariant whole(Decisions &decisions)
{
    return QVariant::fromValue(static_cast<T>(anyWhole(decisions)));
}

} // namespace

quint64 anyWhole(Decisions &decisions)
{
    switch (decisions.below(5)) {
    case 1:
        return nearAnEnd(decisions);
    case 2: // negative, or above all that is signed
        return 0 - nearAnEnd(decisions);
    case 3:
        return decisions.bits<quint64>();
    case 4:
        return 0 - quint64(decisions.bits<uchar>());
    default:
        return decisions.bits<uchar>();
    }
}

double anyDouble(Decisions &decisions)
{
    static double (*const kinds[])(Decisions &) = {
        special,
        price,
        price,
        withAnExponentPerhaps,
        withAnExponent,
        nearPowerOfTwo,
        [](Decisions &d) { return neighbour(d, price(d)); },
        [](Decisions &d) { return d.bits<double>(); },
        [](Decisions &d) { return neighbour(d, double(anyWhole(d))); },
    };
    const double value = decisions.oneOf(kinds)(decisions);
    return decisions.oneIn(4) ? -value : value;
}

QVariant anyNumber(Decisions &decisions)
{
    static QVariant (*const kinds[])(Decisions &) = {
        [](Decisions &d) -> QVariant { return d.oneIn(2); },
        [](Decisions &d) -> QVariant { return anyDouble(d); },
        [](Decisions &d) -> QVariant { return d.oneIn(2) ? d.bits<float>() : float(anyDouble(d)); },
        whole<int>,
        whole<uint>,
        whole<qlonglong>,
        whole<qulonglong>,
        whole<qulonglong>,
        whole<short>,
        whole<ushort>,
        whole<long>,
        whole<ulong>,
        whole<char>,
        whole<signed char>,
        whole<uchar>,
    };
    return decisions.oneOf(kinds)(decisions);
}
