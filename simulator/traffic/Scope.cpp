#include "traffic/Scope.h"

#include <QVariantMap>

namespace sim::traffic {

namespace {

thread_local quint64 t_call = 0;
thread_local PageCall *t_pageCall = nullptr;

Entry endOf(const Entry &call, quint64 number)
{
    Entry entry;
    entry.kind = Entry::CallDone;
    entry.page = call.page;
    entry.name = call.name;
    entry.uuid = call.uuid;
    entry.of = number;
    return entry;
}

} // namespace

CallScope::CallScope(quint64 call, PageCall *operations) : m_outer(t_call), m_outerOperations(t_pageCall)
{
    t_call = call;
    t_pageCall = operations;
}

CallScope::~CallScope()
{
    t_call = m_outer;
    t_pageCall = m_outerOperations;
}

quint64 CallScope::current()
{
    return t_call;
}

PageCall::PageCall(Log &log, const Entry &call)
    : m_log(log), m_done(endOf(call, log.add(call))), m_begin(log.now()), m_scope(m_done.of, this)
{
}

void PageCall::done(bool isHandled)
{
    m_done.isHandled = isHandled;
    m_done.duration = m_log.now() - m_begin;
    QVariantMap operations;
    for (const auto &[name, count] : m_operations)
        operations.insert(QString::fromLatin1(name), count);
    m_done.args = {operations};
    m_log.add(m_done);
}

bool PageCall::isFirst(const char *operation)
{
    if (!t_pageCall)
        return true;
    for (auto &[name, count] : t_pageCall->m_operations) {
        if (name == operation) // literals: the address is enough
            return ++count, false;
    }
    t_pageCall->m_operations.emplace_back(operation, 1);
    return true;
}

} // namespace sim::traffic
