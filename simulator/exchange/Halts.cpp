#include "exchange/Halts.h"

#include <algorithm>

namespace sim {

void Halts::add(int security, Span span)
{
    if (span.first >= span.end)
        return;
    const std::lock_guard lock(m_mutex);
    std::vector<Span> apart;
    for (const Span &other : m_spans[security]) {
        if (other.end < span.first || other.first > span.end)
            apart.push_back(other);
        else
            span = {std::min(span.first, other.first), std::max(span.end, other.end)};
    }
    apart.insert(std::find_if(apart.begin(), apart.end(), [&](const Span &other) { return other.first > span.first; }),
                 span);
    m_spans[security] = std::move(apart);
    m_isEmpty = false;
}

void Halts::cut(int security, qint64 end)
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_spans.find(security);
    if (found == m_spans.end())
        return;
    std::vector<Span> kept;
    for (const Span &span : found->second) {
        if (span.first < end)
            kept.push_back({span.first, std::min(span.end, end)});
    }
    found->second = std::move(kept);
}

std::optional<Halts::Span> Halts::begunBy(int security, qint64 step) const
{
    if (m_isEmpty)
        return std::nullopt;
    const std::lock_guard lock(m_mutex);
    const auto found = m_spans.find(security);
    if (found == m_spans.end())
        return std::nullopt;
    const auto after =
        std::find_if(found->second.begin(), found->second.end(), [&](const Span &span) { return span.first > step; });
    return after == found->second.begin() ? std::nullopt : std::make_optional(*std::prev(after));
}

std::optional<Halts::Span> Halts::at(int security, qint64 step) const
{
    const std::optional<Span> span = begunBy(security, step);
    return span && step < span->end ? span : std::nullopt;
}

} // namespace sim
