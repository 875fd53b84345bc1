#include "platform/MessageBus.h"

#include "CUnPackMessageCommon.h"
#include "QvPresenterClass.h"
#include "Tessar_Fields.h"
#include "platform/Faults.h"
#include "platform/PackedRow.h"
#include "platform/SimulatedClock.h"
#include "platform/Wakeup.h"
#include "traffic/Scope.h"

#include <algorithm>

namespace sim {

namespace {

constexpr int kFirstEventId = 0x40000; // above the ids of the terminal's own events
constexpr size_t kMaxWaiting = 10000;

// Answers are large (thousands of candles), and a presenter's thread may be slower than the bus. So further answers
// wait for its acknowledgements, as requests, which are small.
constexpr int kMaxUnacknowledged = 16;

const QString kTerminalName = QStringLiteral("Terminal");

QVariantMap rowOf(const QVariant &message)
{
    CUnPackMessageCommon unpack;
    unpack.SetUnPackMsg(message, false);
    return unpack.GetRowValue();
}

/// The body of a message without an id of CPackMessageCommon's.
QVariant packed(const QVariantMap &row)
{
    PackedRow fields;
    fields.reserve(row.size());
    for (auto field = row.constBegin(); field != row.constEnd(); ++field)
        fields.append({field.key(), field.value()});
    return QVariant::fromValue(fields);
}

/// Of an answer's records, as many go to the log of the traffic.
constexpr int kLoggedRecords = 20;

traffic::Entry entryOf(traffic::Entry::Kind kind, const QVariantMap &row, const QVariant &messageId)
{
    traffic::Entry entry;
    entry.kind = kind;
    entry.messageId = messageId.toString();
    entry.args = {row};
    return entry;
}

void logRequest(const CMessageCommon &request)
{
    const QVariantMap row = rowOf(request.Msg());
    traffic::Entry entry = entryOf(traffic::Entry::HostRequest, row, row.value(Tessar_Fields::System::clientMsgID));
    entry.name = request.Type().toString();
    traffic::log().add(std::move(entry));
}

void logAnswer(const QString &name, const QVariantMap &request, const QVariantList &answer)
{
    traffic::Entry entry;
    entry.kind = traffic::Entry::HostAnswer;
    entry.name = name;
    entry.messageId = request.value(Tessar_Fields::System::clientMsgID).toString();
    entry.args = answer.mid(0, kLoggedRecords);
    entry.count = answer.size();
    traffic::log().add(std::move(entry));
}

} // namespace

MessageBus::MessageBus(const SimulatedClock &clock, std::chrono::milliseconds latency, const Faults *faults)
    : m_clock(clock), m_latency(latency), m_faults(faults)
{
    m_thread = std::thread([this] { run(); });
}

MessageBus::~MessageBus()
{
    stop();
}

void MessageBus::serve(const QString &requestType, const QString &answerType, Answer answer)
{
    const std::lock_guard lock(m_mutex);
    m_services.insert(requestType, {answerType, std::move(answer)});
}

void MessageBus::listen(int eventId, const Listener &listener)
{
    const std::lock_guard lock(m_mutex);
    m_listeners.insert(eventId, listener);
}

int MessageBus::join(QvPresenterClass *presenter, const QString &name, Wakeup *acknowledged)
{
    const std::lock_guard lock(m_mutex);
    m_presenters.insert(++m_lastPid, {presenter, name, acknowledged, 0});
    return m_lastPid;
}

void MessageBus::leave(int pid)
{
    std::unique_lock lock(m_mutex);
    m_presenters.remove(pid);
    for (QVector<int> &pids : m_subscribers)
        pids.removeAll(pid);
    // A presenter that leaves during a call into itself must not wait for that call.
    if (std::this_thread::get_id() != m_thread.get_id())
        m_returned.wait(lock, [&] { return m_calling != pid; });
    m_wake.notify_all();
}

void MessageBus::awaitReturn()
{
    std::unique_lock lock(m_mutex);
    if (std::this_thread::get_id() == m_thread.get_id())
        return; // it would wait for its own call
    const quint64 call = m_calls;
    m_returned.wait(lock, [&] { return m_calling == 0 || m_calls != call; });
}

void MessageBus::subscribe(int pid, int eventId)
{
    const std::lock_guard lock(m_mutex);
    QVector<int> &pids = m_subscribers[eventId];
    if (m_presenters.contains(pid) && !pids.contains(pid))
        pids.append(pid);
}

int MessageBus::eventId(const QString &name)
{
    const std::lock_guard lock(m_mutex);
    const auto known = m_eventIds.constFind(name);
    if (known != m_eventIds.constEnd())
        return *known;
    const int id = kFirstEventId + m_eventIds.size();
    m_eventIds.insert(name, id);
    return id;
}

void MessageBus::nameEvent(int eventId, const QString &name)
{
    const std::lock_guard lock(m_mutex);
    m_eventIds.insert(name, eventId);
}

void MessageBus::publish(int pid, std::unique_ptr<CEventMessageCommon> event)
{
    const QVariantMap row = rowOf(event->Msg());
    traffic::Entry entry = entryOf(traffic::Entry::HostEvent, row, row.value(Tessar_Fields::System::clientMsgID));
    const std::lock_guard lock(m_mutex);
    if (!m_stopping)
        send(m_presenters.value(pid).name, std::move(event), std::move(entry), dueOfNext());
}

void MessageBus::announce(int eventId, const QVariantMap &row)
{
    announceLate(eventId, row, {}, {});
}

QDateTime MessageBus::announceLate(int eventId, const QVariantMap &row, std::chrono::milliseconds delay,
                                   const QDateTime &notBefore)
{
    const std::lock_guard lock(m_mutex);
    QVariantMap identified = row;
    QVariant &id = identified[Tessar_Fields::System::clientMsgID];
    if (!id.isValid())
        id = QStringLiteral("T%1").arg(++m_lastId);
    auto event = std::make_unique<CEventMessageCommon>();
    event->SetType(eventId);
    event->SetMsg(packed(identified));
    if (m_stopping)
        return {};
    QDateTime due = dueOfNext().addMSecs(delay.count());
    if (notBefore.isValid())
        due = std::max(due, notBefore);
    send(kTerminalName, std::move(event), entryOf(traffic::Entry::HostEvent, row, id), due);
    return due;
}

QDateTime MessageBus::dueOfNext() const
{
    return m_clock.now().addMSecs(m_latency.count());
}

void MessageBus::send(const QString &sender, std::unique_ptr<CEventMessageCommon> event, traffic::Entry entry,
                      const QDateTime &due)
{
    const int id = event->Type().toInt();
    entry.name = m_eventIds.key(id, QString::number(id));
    traffic::log().add(std::move(entry));
    enqueue({due, sender, std::move(event), {}, {}, traffic::CallScope::current()});
}

void MessageBus::enqueue(QueuedEvent event)
{
    // What follows from a message and what others send at the time of that message are due at the same time. Which
    // comes first must not depend on which thread was faster.
    event.isConsequence = std::this_thread::get_id() == m_thread.get_id();
    const auto isBefore = [](const QueuedEvent &one, const QueuedEvent &other) {
        return one.due != other.due ? one.due < other.due : one.isConsequence && !other.isConsequence;
    };
    m_events.insert(std::upper_bound(m_events.begin(), m_events.end(), event, isBefore), std::move(event));
    m_wake.notify_all();
}

bool MessageBus::request(std::unique_ptr<CMessageCommon> request)
{
    const std::lock_guard lock(m_mutex);
    if (m_stopping || m_requests.size() >= kMaxWaiting || !m_presenters.contains(request->Srcid()) ||
        !m_services.contains(request->Type().toString()))
        return false;
    logRequest(*request);
    const qint64 slow = m_faults ? m_faults->delay(Fault::SlowAnswers).count() : 0;
    m_requests.push_back({dueOfNext().addMSecs(slow), std::move(request), traffic::CallScope::current()});
    m_wake.notify_all();
    return true;
}

std::optional<QVariantList> MessageBus::requestAndWait(std::unique_ptr<CMessageCommon> request)
{
    std::future<std::optional<QVariantList>> answer;
    {
        std::unique_lock lock(m_mutex);
        if (m_stopping || !m_services.contains(request->Type().toString()))
            return std::nullopt;
        logRequest(*request);
        if (std::this_thread::get_id() == m_thread.get_id())
            return fetch(*request, lock); // the bus thread answers itself: it cannot wait for itself
        Reply reply;
        answer = reply.get_future();
        ++m_waitingSenders;
        enqueue({dueOfNext(), {}, {}, std::move(request), std::move(reply), traffic::CallScope::current()});
    }
    return answer.get();
}

void MessageBus::timeMoved()
{
    const std::lock_guard lock(m_mutex);
    m_wake.notify_all();
}

void MessageBus::stop()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stopping = true;
        m_wake.notify_all();
    }
    if (m_thread.joinable())
        m_thread.join();
}

bool MessageBus::isDue(const QueuedEvent &event) const
{
    return m_waitingSenders > 0 || event.due <= m_clock.now();
}

void MessageBus::run()
{
    std::unique_lock lock(m_mutex);
    while (!m_stopping) {
        if (!m_events.empty() && isDue(m_events.front())) {
            QueuedEvent queued = std::move(m_events.front());
            m_events.pop_front();
            deliver(std::move(queued), lock);
            continue;
        }
        const bool mayAnswerNext = !m_requests.empty() && mayAnswer(m_requests.front());
        if (mayAnswerNext && m_requests.front().due <= m_clock.now()) {
            Request request = std::move(m_requests.front());
            m_requests.pop_front();
            answer(std::move(request), lock);
            continue;
        }
        if (m_events.empty() && !mayAnswerNext) {
            m_wake.wait(lock);
        } else {
            QDateTime due;
            if (!m_events.empty())
                due = m_events.front().due;
            if (mayAnswerNext && (!due.isValid() || m_requests.front().due < due))
                due = m_requests.front().due;
            m_wake.wait_until(lock, RealClock::now() + m_clock.realTimeUntil(due));
        }
    }
    for (QueuedEvent &queued : m_events) {
        if (queued.reply)
            queued.reply->set_value(std::nullopt);
    }
    m_events.clear();
    m_requests.clear();
}

bool MessageBus::mayAnswer(const Request &request) const
{
    return m_presenters.value(request.message->Srcid()).unacknowledged < kMaxUnacknowledged;
}

void MessageBus::deliver(QueuedEvent queued, std::unique_lock<std::mutex> &lock)
{
    const FrozenTime time(queued.due);
    const traffic::CallScope scope(queued.call);
    if (queued.reply) {
        --m_waitingSenders;
        queued.reply->set_value(fetch(*queued.request, lock));
        return;
    }
    const QVariant type = queued.event->Type();
    if (const Listener listener = m_listeners.value(type.toInt())) {
        lock.unlock();
        listener(rowOf(queued.event->Msg()));
        lock.lock();
    }
    const QVector<int> pids = m_subscribers.value(type.toInt());
    for (const int pid : pids) {
        call(pid, lock, [&](const Presenter &presenter) {
            presenter.object->ProcEventMsg(queued.sender, type, queued.event->Msg());
        });
    }
}

void MessageBus::answer(Request request, std::unique_lock<std::mutex> &lock)
{
    const FrozenTime time(request.due);
    const traffic::CallScope scope(request.call);
    const int pid = request.message->Srcid();
    const QVariant answerType = m_services.value(request.message->Type().toString()).answerType;
    const std::optional<QVariantList> list = fetch(*request.message, lock);
    const auto presenter = m_presenters.find(pid);
    if (!list || presenter == m_presenters.end())
        return;
    ++presenter->unacknowledged;
    call(pid, lock, [&](const Presenter &presenter) {
        presenter.object->ProcQuotationMsg(presenter.name, answerType, *list);
        // Queued after everything that the call has queued for the presenter's thread.
        presenter.acknowledged->post();
    });
}

void MessageBus::call(int pid, std::unique_lock<std::mutex> &lock, const std::function<void(const Presenter &)> &call)
{
    const auto found = m_presenters.find(pid);
    if (found == m_presenters.end() || m_stopping)
        return;
    m_calling = pid;
    ++m_calls;
    const Presenter presenter = *found;
    lock.unlock();
    call(presenter);
    lock.lock();
    m_calling = 0;
    m_returned.notify_all();
}

void MessageBus::acknowledged(int pid)
{
    const std::lock_guard lock(m_mutex);
    const auto presenter = m_presenters.find(pid);
    if (presenter != m_presenters.end())
        --presenter->unacknowledged;
    m_wake.notify_all();
}

std::optional<QVariantList> MessageBus::fetch(const CMessageCommon &request, std::unique_lock<std::mutex> &lock)
{
    const Service service = m_services.value(request.Type().toString());
    lock.unlock();
    const QVariantMap row = rowOf(request.Msg());
    std::optional<QVariantList> list = service.answer(row);
    if (list)
        logAnswer(service.answerType, row, *list);
    lock.lock();
    return list;
}

} // namespace sim
