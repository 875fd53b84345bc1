#pragma once

#include "CEventMessageCommon.h"
#include "CMessageCommon.h"
#include "HostApi.h"
#include "traffic/Entry.h"

#include <QDateTime>
#include <QHash>
#include <QString>
#include <QVariant>
#include <QVector>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

class QvPresenterClass;

namespace sim {

class Faults;
class SimulatedClock;
class Wakeup;

/// The terminal's message bus: carries requests and events between presenters, on a thread of its own.
/// It works in exchange time. What it carries is due some time after it was sent, and is handled in that order, as of
/// the time at which it was due. So what the terminal answers does not depend on the pace of the machine.
/// Made by the Terminal and shared with every presenter, so that it outlives them all. After stop() it accepts nothing
/// and calls nobody. Everything may be called from any thread. It calls presenters on its own thread only, and without
/// holding its mutex. Flow control: the presenter acknowledges each answer; at most 16 are outstanding.
class VARNEL_HOST_API MessageBus {
public:
    /// Makes the answer to a request from the fields of the request; nothing when it is never answered. Called on the
    /// bus thread.
    using Answer = std::function<std::optional<QVariantList>(const QVariantMap &request)>;

    /// Receives the fields of an event. Called on the bus thread.
    using Listener = std::function<void(const QVariantMap &row)>;

    /// latency: of a request or event, in exchange time. faults: which slow answers down, or null. Neither they nor the
    /// clock are used after stop().
    MessageBus(const SimulatedClock &clock, std::chrono::milliseconds latency, const Faults *faults = nullptr);
    ~MessageBus();

    /// From now on requests of that type are answered with a message of answerType.
    void serve(const QString &requestType, const QString &answerType, Answer answer);

    /// From now on the terminal itself receives the events of that id, before their subscribers do.
    void listen(int eventId, const Listener &listener);

    /// Gives the presenter its address. After each answer the bus posts `acknowledged`, which must call acknowledged()
    /// on the presenter's thread.
    int join(QvPresenterClass *presenter, const QString &name, Wakeup *acknowledged);

    /// The presenter's thread has handled one more answer.
    void acknowledged(int pid);

    /// Waits for the current call into the presenter; no call follows.
    void leave(int pid);

    /// Waits for the current call into a presenter, if there is one. Afterwards nothing that was unregistered before is
    /// still in use on the bus thread.
    void awaitReturn();

    void subscribe(int pid, int eventId);

    /// The id of a named event, assigned when the name is first asked for.
    int eventId(const QString &name);

    /// Names an event whose id is fixed, for the log of the traffic.
    void nameEvent(int eventId, const QString &name);

    void publish(int pid, std::unique_ptr<CEventMessageCommon> event);

    /// Publishes an event of the terminal itself. Subscribers unpack the row; without a message id it gets one of the
    /// terminal's own: the ids of requests, which answers show, depend on the requests alone.
    /// The queue of these events is not limited: none may be lost, and the caller cannot wait, because it may be the
    /// thread that handles them. They are small, and each stands for something that happened.
    void announce(int eventId, const QVariantMap &row);

    /// The same with a longer latency. Returns when it is due, which is not before that time.
    QDateTime announceLate(int eventId, const QVariantMap &row, std::chrono::milliseconds delay,
                           const QDateTime &notBefore);

    /// False when nobody serves such requests, the sender is unknown, the queue is full, or the bus has stopped.
    bool request(std::unique_ptr<CMessageCommon> request);

    /// The same, but waits for the answer. Nothing when the request is refused. The exchange time may stand still
    /// meanwhile: then it is answered before its time.
    std::optional<QVariantList> requestAndWait(std::unique_ptr<CMessageCommon> request);

    /// To be called when the clock's time or limit was moved.
    void timeMoved();

    /// Waits for the current call, drops the queues and ends the thread.
    void stop();

private:
    using RealClock = std::chrono::steady_clock;
    using Reply = std::promise<std::optional<QVariantList>>;

    struct Presenter {
        QvPresenterClass *object = nullptr;
        QString name;
        Wakeup *acknowledged = nullptr;
        int unacknowledged = 0; ///< answers delivered that its own thread has not handled yet
    };
    struct Service {
        QString answerType;
        Answer answer;
    };
    struct Request {
        QDateTime due;
        std::unique_ptr<CMessageCommon> message;
        quint64 call; ///< of a page, to which it belongs
    };
    struct QueuedEvent { ///< an event, or the request of a sender that waits for the reply
        QDateTime due;
        QString sender = {};
        std::unique_ptr<CEventMessageCommon> event = {};
        std::unique_ptr<CMessageCommon> request = {};
        std::optional<Reply> reply = {};
        quint64 call = 0;           ///< of a page, to which it belongs
        bool isConsequence = false; ///< the bus thread has sent it
    };

    // Called with the mutex held.
    QDateTime dueOfNext() const; ///< of what is sent now
    void send(const QString &sender, std::unique_ptr<CEventMessageCommon> event, traffic::Entry entry,
              const QDateTime &due);
    void enqueue(QueuedEvent event);
    bool isDue(const QueuedEvent &event) const;

    void run();
    bool mayAnswer(const Request &request) const;
    void deliver(QueuedEvent queued, std::unique_lock<std::mutex> &lock);
    void answer(Request request, std::unique_lock<std::mutex> &lock);
    void call(int pid, std::unique_lock<std::mutex> &lock, const std::function<void(const Presenter &)> &call);
    std::optional<QVariantList> fetch(const CMessageCommon &request, std::unique_lock<std::mutex> &lock);

    const SimulatedClock &m_clock;
    const std::chrono::milliseconds m_latency;
    const Faults *const m_faults; ///< or null

    // Guarded by m_mutex
    std::mutex m_mutex;
    std::condition_variable m_wake;     ///< there is work, or the bus stops
    std::condition_variable m_returned; ///< a call into a presenter has ended
    QHash<int, Presenter> m_presenters;
    QHash<QString, Service> m_services;
    QHash<int, Listener> m_listeners;       ///< by event id
    QHash<int, QVector<int>> m_subscribers; ///< event id to addresses, in the order of subscription
    QHash<QString, int> m_eventIds;
    std::deque<Request> m_requests;
    std::deque<QueuedEvent> m_events; ///< by their time; of the same time consequences first
    int m_waitingSenders = 0;
    int m_lastPid = 0;
    quint64 m_lastId = 0; ///< of the terminal's own events
    int m_calling = 0;    ///< the presenter that is being called, or 0
    quint64 m_calls = 0;  ///< that have begun
    bool m_stopping = false;

    std::thread m_thread; ///< last: it uses all of the above
};

} // namespace sim
