#include "call/CallOptions.h"
#include "call/SimulatorSocket.h"

#include "common/WebConstants.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>

#include <cstdio>

using namespace WebConstants;
using namespace sim;

namespace {

enum Status { Success = 0, NoSuccess = 1, BadCommandLine = 2 };

const QString kUuid = QStringLiteral("varnel-call");

constexpr std::chrono::seconds kPatience(10);

void print(FILE *stream, const QByteArray &text)
{
    std::fputs(text.constData(), stream);
    std::fflush(stream); // whoever reads a pipe gets each event as it comes
}

int fail(const QString &sentence, Status status = NoSuccess)
{
    print(stderr, QStringLiteral("varnel-call: %1\n").arg(sentence).toLocal8Bit());
    return status;
}

QString replyEventOf(const QString &method)
{
    const QString call = QStringLiteral("_REQ");
    return method.endsWith(call) ? method.chopped(call.size()) + QStringLiteral("_RES") : QString();
}

/// Waits for the reply to the call. Nothing when it does not come in time, or the simulator ends.
std::optional<QString> awaitReply(SimulatorSocket &socket, const QString &name, std::chrono::milliseconds timeout)
{
    QElapsedTimer timer;
    timer.start();
    for (auto left = timeout; left.count() > 0; left = timeout - std::chrono::milliseconds(timer.elapsed())) {
        const std::optional<QJsonObject> event = socket.next(left);
        if (!event)
            return std::nullopt;
        if (event->value(QStringLiteral("event")) == name)
            return event->value(QStringLiteral("args")).toArray().first().toString();
    }
    return std::nullopt;
}

int showReply(const QString &name, const QString &reply)
{
    if (reply.isEmpty()) {
        print(stdout, "\"\"\n");
        const bool isMeant = name == ReplyEvent::Data_getUpsDownsAnalysis; // it is its only answer
        return isMeant ? Success : fail(QStringLiteral("the answer is empty: the call has too few arguments"));
    }
    const QJsonDocument document = QJsonDocument::fromJson(reply.toUtf8());
    print(stdout, document.toJson());
    if (document.object().value(Key::code) == Code::success)
        return Success;
    return fail(QStringLiteral("refused: %1").arg(document.object().value(Key::msg).toString()));
}

/// For a call that got no answer, and for events that do not come.
int failToWait(const SimulatorSocket &socket, const QString &what, std::chrono::seconds timeout)
{
    if (socket.hasEnded())
        return fail(QStringLiteral("the simulator has ended the connection"));
    return fail(QStringLiteral("%1 within %2 s").arg(what).arg(timeout.count()));
}

int makeCall(SimulatorSocket &socket, const CallOptions &options)
{
    const QString reply = replyEventOf(options.method);
    if (reply.isEmpty())
        return fail(QStringLiteral("\"%1\" is not a call: their names end in _REQ").arg(options.method),
                    BadCommandLine);
    socket.invoke(options.method, QVariantList{kUuid} + options.args);
    if (reply == Reserved::Vlx_sendCustomInfoReply || reply == Reserved::Vlx_subStrategyMsgReply)
        return Success; // no answer will come
    const auto timeout = options.timeout.value_or(kPatience);
    const std::optional<QString> text = awaitReply(socket, reply, timeout);
    return text ? showReply(reply, *text)
                : failToWait(socket, QStringLiteral("no answer to %1").arg(options.method), timeout);
}

/// Gives the command, or prints the state.
int control(SimulatorSocket &socket, const CallOptions &options)
{
    const auto timeout = options.timeout.value_or(kPatience);
    if (!options.command.isEmpty())
        socket.send({{QStringLiteral("command"), options.command}});
    const QString wanted = options.command.isEmpty() ? QStringLiteral("state") : QStringLiteral("result");
    while (const std::optional<QJsonObject> frame = socket.next(timeout)) {
        if (frame->value(QStringLiteral("kind")) != wanted)
            continue;
        if (options.command.isEmpty())
            print(stdout, QJsonDocument(*frame).toJson());
        const QString problem = frame->value(QStringLiteral("problem")).toString();
        return problem.isEmpty() ? Success : fail(problem);
    }
    return failToWait(socket, QStringLiteral("no answer to the command"), timeout);
}

/// JSON in a text is shown as the value that it stands for.
QJsonValue shown(const QJsonValue &argument)
{
    const QJsonDocument document = QJsonDocument::fromJson(argument.toString().toUtf8());
    return document.isArray() ? QJsonValue(document.array())
                              : (document.isObject() ? QJsonValue(document.object()) : argument);
}

int follow(SimulatorSocket &socket, const CallOptions &options)
{
    if (!options.symbols.isEmpty())
        socket.invoke(Method::Sub_subscribe, {kUuid, options.symbols});
    for (int seen = 0; !options.count || seen < *options.count;) {
        std::optional<QJsonObject> event = socket.next(options.timeout);
        if (!event)
            return failToWait(socket, QStringLiteral("no event"), options.timeout.value_or(kPatience));
        if (!options.events.contains(event->value(QStringLiteral("event")).toString()))
            continue;
        QJsonArray args;
        for (const QJsonValue argument : event->value(QStringLiteral("args")).toArray())
            args.append(shown(argument));
        event->insert(QStringLiteral("args"), args);
        print(stdout, QJsonDocument(*event).toJson(QJsonDocument::Compact) + '\n');
        ++seen;
    }
    return Success;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("varnel-call"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VARNEL_VERSION));

    CallOptions options;
    switch (options.parse(QCoreApplication::arguments())) {
    case CallOptions::Refuse:
        return fail(options.text, BadCommandLine);
    case CallOptions::ShowText:
        print(stdout, options.text.toLocal8Bit());
        return Success;
    case CallOptions::Run:
        break;
    }

    SimulatorSocket socket;
    const QString error =
        socket.connect(options.port, options.timeout.value_or(kPatience), options.isControl ? "/control" : "/view");
    if (!error.isEmpty())
        return fail(QStringLiteral("no simulator answers on 127.0.0.1:%1: %2").arg(options.port).arg(error));
    const int status = options.isControl          ? control(socket, options)
                       : options.events.isEmpty() ? makeCall(socket, options)
                                                  : follow(socket, options);
    socket.close();
    return status;
}
