#include "hostcheck/checks/BusTalk.h"
#include "hostcheck/checks/Tables.h"

namespace HostCheck {

namespace {

template <typename Message>
void expectFields()
{
    Message message;
    expect(!message.Type().isValid() && !message.Msg().isValid() && message.Srcid() == 0,
           "a new message has no type, no body and the sender 0",
           QStringLiteral("%1, %2, %3").arg(shown(message.Type()), shown(message.Msg())).arg(message.Srcid()));
    const QVariant type = QStringLiteral("type");
    const QVariant body = QVariantList{1, QStringLiteral("文")};
    message.SetType(type);
    message.SetMsg(body);
    message.SetSrcid(7);
    expect(message.Type() == type && message.Msg() == body && message.Srcid() == 7, "a message keeps what is set",
           QStringLiteral("%1, %2, %3").arg(shown(message.Type()), shown(message.Msg())).arg(message.Srcid()));
}

void fieldsOfRequests(const KnownValues &)
{
    expectFields<CMessageCommon>();
}

void fieldsOfEvents(const KnownValues &)
{
    expectFields<CEventMessageCommon>();
}

/// Fails unless the bus deletes the message that send() gives away, once.
template <typename Send>
void expectDeleted(Send send)
{
    const auto deletions = std::make_shared<std::atomic<int>>(0);
    send(deletions);
    const bool isDeleted = waitUntil([&] { return *deletions > 0; });
    expect(isDeleted, "the bus deletes the message that it was given", QStringLiteral("it still exists"));
}

void takesEvents(const KnownValues &)
{
    Probe probe;
    expectDeleted([&](const Deletions &deletions) { publish(probe, kUnknown, deletions); });
}

/// A request that the host does not know may be refused: it is taken over all the same.
void takesRequests(const KnownValues &)
{
    Probe probe;
    expectDeleted(
        [&](const Deletions &deletions) { probe.sendRequest_Async(makeRequest(probe, kUnknown, deletions)); });
}

void takesSyncRequests(const KnownValues &)
{
    Probe probe;
    expectDeleted([&](const Deletions &deletions) {
        QVariant reply;
        probe.sendRequest_Sync(makeRequest(probe, kUnknown, deletions), reply);
    });
}

} // namespace

CheckTable messageChecks()
{
    return {
        {"messages.request-fields", "K-line requests lose their type, their body or their sender.", fieldsOfRequests},
        {"messages.event-fields", "Strategy calls lose their type, their body or their sender.", fieldsOfEvents},
        {"messages.events-taken-over", "Each strategy call leaks its message.", takesEvents},
        {"messages.requests-taken-over", "Each K-line request leaks its message, also one that is refused.",
         takesRequests},
        {"messages.sync-requests-taken-over", "Each request that waits leaks its message, also one that is refused.",
         takesSyncRequests},
    };
}

} // namespace HostCheck
