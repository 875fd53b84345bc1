#pragma once

#include <QMessageLogContext>
#include <QString>

#include <functional>
#include <utility>

/// Calls a function with each log message while it lives, on the thread that logs, before any recorder gets the line.
/// There can be only one at a time. The function is not called for what it logs itself.
class LogHook {
public:
    explicit LogHook(std::function<void(const QString &message)> function)
    {
        hook = std::move(function);
        previous = qInstallMessageHandler(handle);
    }
    ~LogHook()
    {
        qInstallMessageHandler(previous);
        hook = nullptr;
    }

private:
    Q_DISABLE_COPY(LogHook)

    static void handle(QtMsgType type, const QMessageLogContext &context, const QString &message)
    {
        if (const std::function<void(const QString &)> function = std::exchange(hook, nullptr)) {
            function(message);
            hook = function;
        }
        previous(type, context, message);
    }

    static inline std::function<void(const QString &)> hook;
    static inline QtMessageHandler previous = nullptr;
};
