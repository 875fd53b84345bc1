#pragma once

#include <QHash>
#include <QString>
#include <QVariant>
#include <QVariantMap>
#include <QVector>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

class QvPresenterClass;

/// The host's message bus: calls presenters on a thread of its own. Never destroyed, because the library's presenter
/// ends with the static objects.
class Bus {
public:
    static Bus &instance();

    int join(QvPresenterClass *presenter);

    /// Waits for the current call into the presenter; no call follows.
    void leave(int pid);

    void subscribe(int pid, int eventId);
    void publish(int eventId, const QVariant &body);

    /// Runs the function on the thread of the bus.
    void post(const std::function<void()> &function);

    using Call = std::function<void(QvPresenterClass &presenter)>;

    /// Calls the presenter if it still exists. On the thread of the bus.
    void call(int pid, const Call &call);

private:
    Bus();
    void run();

    std::mutex m_mutex; ///< guards all of the below
    std::condition_variable m_changed;
    std::deque<std::function<void()>> m_functions;
    QHash<int, QvPresenterClass *> m_presenters;
    QHash<int, QVector<int>> m_subscribers;
    int m_lastPid = 0;
    int m_calling = 0;
};

constexpr int kStrategyCalls = 0x50001;
constexpr int kStrategyAnswers = 0x50002;
constexpr int kOrderEvent = 0x30003;

/// The id under which the strategy platform answers.
int strategyAnswers();

/// A message of one row, as the bus carries it.
QVariant packed(const QVariantMap &row);

/// The first row of a message.
QVariantMap unpacked(const QVariant &message);

/// The strategy platform: takes the events that carry strategy calls. On the thread of the bus.
void takeStrategyCall(const QVariantMap &call);
