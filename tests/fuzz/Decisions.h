#pragma once

#include <QtGlobal>
#include <cstddef>
#include <cstring>

/// Bytes decide what a random value becomes, one after the other, whether a fuzzer wrote them or a random generator.
/// When they end, every decision is 0: the first choice is the smallest everywhere, so that a tree ends soon.
class Decisions {
public:
    Decisions(const uchar *bytes, std::size_t size) : m_next(bytes), m_left(size) {}

    bool over() const { return m_left == 0; }

    /// A number of this type, from as many bytes as it has.
    template <class T>
    T bits()
    {
        T value{};
        const std::size_t size = qMin(sizeof value, m_left);
        if (size > 0)
            std::memcpy(&value, m_next, size);
        m_next += size;
        m_left -= size;
        return value;
    }

    /// 0 … limit - 1, where limit is at most 65536.
    int below(int limit) { return (limit <= 256 ? bits<uchar>() : bits<quint16>()) % limit; }

    bool oneIn(int chances) { return below(chances) == chances - 1; }

    template <class T, std::size_t N>
    const T &oneOf(const T (&choices)[N])
    {
        return choices[below(int(N))];
    }

    /// A few bytes may ask for much, a long text or a long chain; a tree gets that only a few times.
    bool allowsMuch() { return m_muchLeft > 0 && m_muchLeft-- > 0; }

private:
    const uchar *m_next;
    std::size_t m_left;
    int m_muchLeft = 4;
};
