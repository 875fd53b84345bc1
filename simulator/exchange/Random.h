#pragma once

#include <QString>

/// Random numbers that are pure functions of a key: the same in every process and in any order of the calls.
namespace sim::random {

/// Scrambles a number, so that neighbouring numbers give unrelated results (the finaliser of SplitMix64).
inline quint64 scramble(quint64 x)
{
    x += Q_UINT64_C(0x9e3779b97f4a7c15);
    x = (x ^ (x >> 30)) * Q_UINT64_C(0xbf58476d1ce4e5b9);
    x = (x ^ (x >> 27)) * Q_UINT64_C(0x94d049bb133111eb);
    return x ^ (x >> 31);
}

/// FNV-1a over the characters of the text. qHash would differ between processes.
inline quint64 hash(const QString &text)
{
    quint64 h = Q_UINT64_C(0xcbf29ce484222325);
    for (const QChar c : text)
        h = (h ^ c.unicode()) * Q_UINT64_C(0x100000001b3);
    return h;
}

inline quint64 subkey(quint64 key, quint64 purpose)
{
    return scramble(key ^ scramble(purpose));
}

inline double from0To1(quint64 key, qint64 index)
{
    return double(scramble(key ^ quint64(index)) >> 11) / double(Q_UINT64_C(1) << 53);
}

/// A sequence of random numbers, for what is made once and in a fixed order.
class Sequence {
public:
    explicit Sequence(quint64 key) : m_key(key) {}

    double from0To1() { return random::from0To1(m_key, m_next++); }

    /// From first to last, both included.
    qint64 whole(qint64 first, qint64 last) { return first + qint64(from0To1() * double(last - first + 1)); }

private:
    quint64 m_key;
    qint64 m_next = 0;
};

} // namespace sim::random
