#pragma once

#include "CEventMessageCommon.h"
#include "CMessageCommon.h"
#include "HostApi.h"

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

class Wakeup;

/// The terminal's message bus: carries requests and events between presenters, on a thread of its own.
/// Made by the Terminal and shared with every presenter, so that it outlives them all; after stop() it accepts
/// nothing and calls nobody. Everything may be called from any thread. It never calls a presenter on the caller's
/// thread or while it holds its mutex.
class VARNEL_HOST_API MessageBus {
public:
    /// Answers one kind of request from its fields. Called on the bus thread.
    using Answer = std::function<QVariantList(const QVariantMap &request)>;

    /// Takes in one kind of event from its fields. Called on the bus thread.
    using Listener = std::function<void(const QVariantMap &row)>;

    explicit MessageBus(std::chrono::microseconds latency);
    ~MessageBus();

    /// From now on requests of that type are answered by a message of answerType.
    void serve(const QString &requestType, const QString &answerType, Answer answer);

    /// From now on the terminal itself takes in the events of that id, before their subscribers do.
    void listen(int eventId, const Listener &listener);

    /// Gives the presenter its address. Behind each answer the bus posts digested, on which the presenter's thread
    /// calls digested().
    int join(QvPresenterClass *presenter, const QString &name, Wakeup *digested);

    /// The presenter's thread has worked through one more answer.
    void digested(int pid);

    /// Returns when no call into the presenter is under way any more, and none will follow.
    void leave(int pid);

    /// Returns when the call into a presenter that is under way, if there is one, has ended: what it may have known
    /// from before can go now.
    void awaitReturn();

    void subscribe(int pid, int eventId);

    /// The id of a named event: assigned at the first question, in the order of the questions.
    int eventId(const QString &name);

    void publish(int pid, std::unique_ptr<CEventMessageCommon> event);

    /// An event of the terminal itself: its subscribers' unpackers give the row back, with a message id of its own
    /// when it brings none. How many may wait is not limited: none may be lost, and who announces may be the very
    /// thread that works them through, so that it cannot be made to wait either. Each stands for something that has
    /// happened, and is small.
    void announce(int eventId, const QVariantMap &row);

    /// False when nobody serves such requests, the sender is unknown, too many requests wait, or the bus has stopped.
    bool request(std::unique_ptr<CMessageCommon> request);

    /// The same, waiting for the answer; nothing when there is none.
    std::optional<QVariantList> requestAndWait(std::unique_ptr<CMessageCommon> request);

    /// Lets a call that is under way end, drops the rest and ends the thread.
    void stop();

private:
    using Clock = std::chrono::steady_clock;
    using Reply = std::promise<std::optional<QVariantList>>;

    struct Presenter {
        QvPresenterClass *object = nullptr;
        QString name;
        Wakeup *digested = nullptr;
        int undigested = 0; ///< answers delivered that its own thread has not worked through yet
    };
    struct Service {
        QString answerType;
        Answer answer;
    };
    struct Request {
        Clock::time_point due;
        std::unique_ptr<CMessageCommon> message;
    };
    struct Errand { ///< an event to deliver, or a request whose sender waits for the reply
        Clock::time_point due;
        QString sender = {};
        std::unique_ptr<CEventMessageCommon> event = {};
        std::unique_ptr<CMessageCommon> request = {};
        std::optional<Reply> reply = {};
    };

    void send(const QString &sender, std::unique_ptr<CEventMessageCommon> event); ///< with the mutex held
    void run();
    bool mayAnswer(const Request &request) const;
    void runErrand(Errand errand, std::unique_lock<std::mutex> &lock);
    void answer(Request request, std::unique_lock<std::mutex> &lock);
    void call(int pid, std::unique_lock<std::mutex> &lock, const std::function<void(const Presenter &)> &call);
    QVariantList fetch(const CMessageCommon &request, std::unique_lock<std::mutex> &lock);

    const std::chrono::microseconds m_latency;

    // Guarded by m_mutex
    std::mutex m_mutex;
    std::condition_variable m_wake;     ///< there is work, or the thread shall end
    std::condition_variable m_returned; ///< a call into a presenter has ended
    QHash<int, Presenter> m_presenters;
    QHash<QString, Service> m_services;
    QHash<int, Listener> m_listeners;       ///< by event id
    QHash<int, QVector<int>> m_subscribers; ///< event id to addresses, in the order of subscription
    QHash<QString, int> m_eventIds;
    std::deque<Request> m_requests;
    std::deque<Errand> m_errands;
    int m_lastPid = 0;
    int m_calling = 0;   ///< the presenter that is being called, or 0
    quint64 m_calls = 0; ///< that have begun
    bool m_stopping = false;

    std::thread m_thread; ///< last: it uses all of the above
};

} // namespace sim
