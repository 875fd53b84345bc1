#include "platform/FrozenTime.h"

namespace sim {

namespace {

thread_local const QDateTime *t_frozen = nullptr;

} // namespace

FrozenTime::FrozenTime(const QDateTime &time) : m_time(time), m_before(t_frozen)
{
    t_frozen = &m_time;
}

FrozenTime::~FrozenTime()
{
    t_frozen = m_before;
}

const QDateTime *FrozenTime::current()
{
    return t_frozen;
}

} // namespace sim
