#include "hostcheck/checks/BusTalk.h"
#include "hostcheck/checks/Tables.h"

#include "CPackMessageCommon.h"
#include "Tessar_Fields.h"
#include "common/WebConstants.h"

#include <condition_variable>

namespace HostCheck {

namespace {

using Tessar_Fields::System::clientMsgID;
namespace Own = WebConstants::KLine;

constexpr int kSent = 0;

struct Request {
    std::unique_ptr<CMessageCommon> message;
    QString id;
};

/// A request for daily candles, as the library makes it.
Request kLineRequest(const Probe &probe, const KnownValues &known)
{
    CPackMessageCommon pack;
    pack.AddVaule(Own::symbol, known.symbol);
    pack.AddVaule(Own::startTime, known.startTime);
    pack.AddVaule(Own::stopTime, known.stopTime);
    pack.AddVaule(Own::exRightsType, 10);
    pack.AddVaule(Own::periodType, int(DayKLinePeriod));
    pack.AddVaule(Tessar_Fields::System::msgType, Own::requestType);
    auto message = std::make_unique<CMessageCommon>();
    message->SetType(Own::requestType);
    message->SetMsg(pack.GetPackedMsg(0));
    message->SetSrcid(probe.pluginPid());
    return {std::move(message), pack.GetValue(clientMsgID).toString()};
}

/// The candles of an answer, also when they stand in a list that the library does not read.
QVariantList candlesIn(const QVariant &data)
{
    return data.value<QVariantList>();
}

QString idIn(const QVariant &data)
{
    return candlesIn(data).value(0).toMap().value(clientMsgID).toString();
}

struct Exchange {
    int result = -1;
    QString id; ///< of the request
    std::vector<Probe::Delivery> answers;
    bool cameInsideTheCall = false; ///< on the thread of the call
};

/// One request and its answer. Sent once for all checks that look at it.
const Exchange &exchange(const KnownValues &known)
{
    static const Exchange once = [&] {
        Exchange exchange;
        Probe probe;
        bool isInCall = true; // used on this thread only
        const std::thread::id caller = std::this_thread::get_id();
        probe.onDelivery([&] {
            if (std::this_thread::get_id() == caller && isInCall)
                exchange.cameInsideTheCall = true;
        });
        Request request = kLineRequest(probe, known);
        exchange.id = request.id;
        exchange.result = probe.sendRequest_Async(request.message.release());
        isInCall = false;
        waitUntil([&] { return !probe.deliveries().empty(); });
        exchange.answers = probe.deliveries();
        return exchange;
    }();
    return once;
}

const Probe::Delivery &answerTo(const KnownValues &known)
{
    if (exchange(known).answers.empty())
        skip(QStringLiteral("no answer comes: see k-lines.answer"));
    return exchange(known).answers.front();
}

void answer(const KnownValues &known)
{
    const Exchange &seen = exchange(known);
    expect(seen.result == kSent, "sendRequest_Async returns 0 for a K-line request", QString::number(seen.result));
    expect(!seen.answers.empty() && !candlesIn(seen.answers.front().data).isEmpty(),
           "candles come for a known symbol; --start-time and --stop-time name the range",
           seen.answers.empty() ? QStringLiteral("nothing came") : shown(seen.answers.front().data));
}

void answerCallsItsOperation(const KnownValues &known)
{
    const Probe::Operation operation = answerTo(known).operation;
    expect(operation == Probe::QuotationMsg, "the bus calls ProcQuotationMsg for an answer",
           QStringLiteral("it calls %1").arg(Probe::nameOf(operation)));
}

void answerHasItsType(const KnownValues &known)
{
    const QVariant type = answerTo(known).type;
    expect(type == QVariant(Own::responseType), "the type of the answer is the text \"KLineResponse\"", shown(type));
}

void answerIsAList(const KnownValues &known)
{
    const QVariant data = answerTo(known).data;
    expect(!data.toList().isEmpty(), "the body of the answer is a QVariantList of maps",
           QStringLiteral("a %1").arg(QLatin1String(data.typeName())));
}

void answerHasTheId(const KnownValues &known)
{
    const QString id = idIn(answerTo(known).data);
    expect(id == exchange(known).id, "the first candle has the client message id of the request",
           QStringLiteral("\"%1\" instead of \"%2\"").arg(id, exchange(known).id));
}

void candlesFitJson(const KnownValues &known)
{
    const QVariantList candles = candlesIn(answerTo(known).data);
    for (const QVariant &candle : candles)
        expectFitsJson(candle.toMap());
}

void answerComesAfterTheCall(const KnownValues &known)
{
    answerTo(known);
    expect(!exchange(known).cameInsideTheCall,
           "the answer does not come on the calling thread before sendRequest_Async has returned",
           QStringLiteral("it came inside the call"));
}

void sendingDoesNotWait(const KnownValues &known)
{
    answerTo(known);
    // Holds the delivery back until the call has returned. A host that waits for it gets stuck.
    struct Gate {
        std::mutex mutex;
        std::condition_variable changed;
        bool hasReturned = false;
        bool wasStuck = false;
    } gate;
    Probe probe;
    const std::thread::id caller = std::this_thread::get_id();
    probe.onDelivery([&] {
        std::unique_lock lock(gate.mutex);
        if (std::this_thread::get_id() != caller &&
            !gate.changed.wait_for(lock, std::chrono::milliseconds(patience()), [&] { return gate.hasReturned; }))
            gate.wasStuck = true;
    });
    probe.sendRequest_Async(kLineRequest(probe, known).message.release());
    {
        const std::lock_guard lock(gate.mutex);
        gate.hasReturned = true;
        gate.changed.notify_all();
    }
    waitUntil([&] { return !probe.deliveries().empty(); });
    expect(!gate.wasStuck, "sendRequest_Async returns before its answer is delivered",
           QStringLiteral("it waits for the delivery"));
}

void answersFromThreads(const KnownValues &known)
{
    answerTo(known);
    constexpr int kThreads = 4;
    Probe probe;
    QStringList wanted;
    std::vector<Request> requests;
    for (int i = 0; i < kThreads; ++i) {
        requests.push_back(kLineRequest(probe, known));
        wanted.append(requests.back().id);
    }
    onThreads(kThreads, [&](int number) { probe.sendRequest_Async(requests[size_t(number)].message.release()); });
    waitUntil([&] { return probe.deliveries().size() == kThreads; });
    const size_t answers = probe.deliveries().size();
    expect(answers == kThreads, "requests of several threads at once are all answered",
           QStringLiteral("%1 of %2").arg(answers).arg(kThreads));
}

struct WaitedFor {
    int result = -1;
    QVariant reply;
};

const WaitedFor &waitedFor(const KnownValues &known)
{
    static const WaitedFor once = [&] {
        WaitedFor seen;
        Probe probe;
        seen.result = probe.sendRequest_Sync(kLineRequest(probe, known).message.release(), seen.reply);
        return seen;
    }();
    return once;
}

void syncAnswer(const KnownValues &known)
{
    const WaitedFor &seen = waitedFor(known);
    expect(seen.result == 0 && !candlesIn(seen.reply).isEmpty(),
           "sendRequest_Sync returns 0 when the candles are in reply",
           QStringLiteral("%1, and the reply %2").arg(seen.result).arg(shown(seen.reply)));
}

void syncAnswerIsAList(const KnownValues &known)
{
    const QVariant reply = waitedFor(known).reply;
    if (candlesIn(reply).isEmpty())
        skip(QStringLiteral("no answer comes: see k-lines.sync-answer"));
    expect(!reply.toList().isEmpty(), "the reply is a QVariantList of maps",
           QStringLiteral("a %1").arg(QLatin1String(reply.typeName())));
}

void syncAnswerOnThreads(const KnownValues &known)
{
    if (waitedFor(known).result != 0)
        skip(QStringLiteral("no answer comes: see k-lines.sync-answer"));
    constexpr int kThreads = 2;
    Probe probe;
    std::vector<int> results(kThreads, -1);
    // This thread turns no event loop meanwhile.
    onThreads(kThreads, [&](int number) {
        QVariant reply;
        results[size_t(number)] = probe.sendRequest_Sync(kLineRequest(probe, known).message.release(), reply);
    });
    for (const int result : results)
        expect(result == 0, "sendRequest_Sync works on every thread, while the user-interface thread is busy",
               QString::number(result));
}

} // namespace

CheckTable kLineChecks()
{
    CheckTable checks{
        {"k-lines.answer", "Pages get no answer to their K-line calls.", answer},
        {"k-lines.answer-calls-its-operation", "The library ignores the answers to K-line calls.",
         answerCallsItsOperation},
        {"k-lines.answer-has-its-type", "The library ignores the answers to K-line calls.", answerHasItsType},
        {"k-lines.answer-is-a-list", "The library takes every K-line answer for an empty one.", answerIsAList},
        {"k-lines.answer-has-the-id", "No page gets the answer, because nobody knows whose it is.", answerHasTheId},
        {"k-lines.candles-fit-json", "Pages get null for a part of a candle.", candlesFitJson},
        {"k-lines.answer-comes-after-the-call", "The answer is dropped, because nobody knows its request yet.",
         answerComesAfterTheCall},
        {"k-lines.sending-does-not-wait", "The terminal's windows stand still during each K-line call.",
         sendingDoesNotWait},
        {"k-lines.answers-from-threads", "Pages get no answer when several ask at once.", answersFromThreads},
        {"k-lines.sync-answer", "A K-line query that waits gets nothing.", syncAnswer},
        {"k-lines.sync-answer-is-a-list", "A K-line query that waits gets an empty list.", syncAnswerIsAList},
        {"k-lines.sync-answer-on-threads", "The terminal stands still when another thread waits for K-lines.",
         syncAnswerOnThreads},
    };
    for (Check &check : checks) {
        check.part = Part::Login;
        check.needs = Symbol;
    }
    return checks;
}

} // namespace HostCheck
