#pragma once

#include <QDebug>
#include <QLoggingCategory>

/// The one category of this library: a terminal filters it by the name "varnel.websdk".
Q_DECLARE_LOGGING_CATEGORY(lcWebSdk)

/// An operation as its log lines name it: the class's file, wherever the code stands, so that a terminal's
/// log filters survive a move between files.
struct Operation {
    const char *name;
    const char *file;
    int line;
    const char *function;
};

#define VARNEL_OPERATION(klass, operation)                                           \
    Operation                                                                        \
    {                                                                                \
#        klass "::" #        operation, #        klass ".cpp", __LINE__, Q_FUNC_INFO \
    }

/// A log line of the operation, begun with its name; the rest is streamed in. A debug line on a busy path asks
/// lcWebSdk().isDebugEnabled() first.
QDebug logLine(QtMsgType level, const Operation &operation);
