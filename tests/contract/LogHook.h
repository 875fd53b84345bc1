#pragma once

#include <QMessageLogContext>
#include <QString>

#include <functional>
#include <utility>

/// While it lives, calls a function with each log message, on the thread that logs, before a LogRecorder gets the line.
/// There can be only one at a time. Messages that the function itself logs do not call it again.
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
