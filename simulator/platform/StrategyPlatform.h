#pragma once

#include "platform/Faults.h"
#include "platform/MessageBus.h"
#include "platform/Scenario.h"

#include <QDateTime>
#include <QMap>
#include <QSet>
#include <QString>
#include <QVariantMap>

namespace sim {

/// The terminal's strategy platform: starts and stops simulated strategies, which trade nothing, and answers their
/// messages.
/// Made by the Terminal after the bus, and destroyed after the bus has stopped. It runs on the bus thread, where the
/// requests arrive; only onTime is called on the quote thread.
/// The view pointer of a request is never dereferenced: the answer returns it unchanged.
class StrategyPlatform {
public:
    StrategyPlatform(MessageBus &bus, const Scenario &scenario, const Faults &faults);

    /// Called at each step, on the quote thread. Once a minute all running strategies send a heartbeat.
    void onTime(const QDateTime &time);

private:
    struct Strategy {
        QString status;
        int messages = 0; ///< received
        int heartbeats = 0;
    };

    void receive(const QVariantMap &request);
    void start(const QVariantMap &request);
    void stop(const QVariantMap &request);
    void queryStatus(const QVariantMap &request);
    void takeCustomMessage(const QVariantMap &request);
    void takeSubscription(const QVariantMap &request);

    /// Why the strategy cannot be started; empty when it can.
    QString reasonAgainst(const QVariantMap &startRequest) const;

    void answer(const QVariantMap &request, const QString &type, const QString &id, const QString &description);
    void setStatus(const QString &id, const QString &status);
    void finishTransition(const QString &id);
    void beat(const QString &time);
    void sendCustomMessage(const QString &id, const QVariantMap &content);
    void announce(QVariantMap row, const QString &type);

    MessageBus &m_bus;
    const Faults &m_faults;
    const QString m_idPrefix;
    // Constant after construction
    QSet<QString> m_fundAccounts;
    int m_outEvent;
    int m_stepEvent; ///< sent to itself: a strategy takes its next status
    int m_beatEvent; ///< sent to itself: a minute has passed

    // Bus thread only
    QMap<QString, Strategy> m_strategies; ///< by id, stopped ones too
    int m_lastNumber = 0;
    QDateTime m_lastDue; ///< of its messages, which keep their order when the servers get faster

    QDateTime m_nextBeat; ///< quote thread only
};

} // namespace sim
