#pragma once

#include "traffic/Log.h"

#include <utility>

namespace sim::traffic {

class PageCall;

/// While it exists, what this thread adds to a log belongs to that call of a page. Use it on the stack; scopes may
/// nest.
class VARNEL_HOST_API CallScope {
public:
    /// call: a number, or 0 for none. operations: which counts the host calls of this thread, if any.
    explicit CallScope(quint64 call, PageCall *operations = nullptr);
    ~CallScope();

    /// The call to which belongs what this thread adds; 0 for none.
    static quint64 current();

private:
    Q_DISABLE_COPY_MOVE(CallScope)

    const quint64 m_outer;
    PageCall *const m_outerOperations;
};

/// A call of a page, while the library handles it. Use it on the stack.
class VARNEL_HOST_API PageCall {
public:
    /// call: of kind Call.
    PageCall(Log &log, const Entry &call);

    /// Adds the entry of its end.
    void done(bool isHandled);

    /// Counts a call of the host. Returns whether it is the first of that operation, or of no call of a page.
    static bool isFirst(const char *operation);

private:
    Q_DISABLE_COPY_MOVE(PageCall)

    Log &m_log;
    Entry m_done;
    const qint64 m_begin;
    const CallScope m_scope;
    std::vector<std::pair<const char *, int>> m_operations; ///< and how often they were called
};

} // namespace sim::traffic
