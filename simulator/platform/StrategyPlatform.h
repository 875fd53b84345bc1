#pragma once

#include "platform/MessageBus.h"
#include "platform/Scenario.h"

#include <QDateTime>
#include <QMap>
#include <QSet>
#include <QString>
#include <QVariantMap>

namespace sim {

/// The terminal's strategy platform: starts, stops and talks to make-believe strategies that trade nothing.
/// Made and destroyed by the Terminal, after the bus and not before it has stopped. It lives on the bus thread, where
/// all requests arrive; tellTime alone belongs to the quote thread.
/// It never follows the view that a request names: it goes back with the answer, as it came.
class StrategyPlatform {
public:
    StrategyPlatform(MessageBus &bus, const Scenario &scenario);

    /// Quote thread only. Once a minute the running strategies tell that they live.
    void tellTime(const QDateTime &time);

private:
    struct Strategy {
        QString status;
        int messages = 0; ///< that have been sent to it
        int heartbeats = 0;
    };

    void receive(const QVariantMap &request);
    void start(const QVariantMap &request);
    void stop(const QVariantMap &request);
    void queryStatus(const QVariantMap &request);
    void takeCustomMessage(const QVariantMap &request);
    void takeSubscription(const QVariantMap &request);

    /// Why it cannot be started; empty when it can.
    QString objectionTo(const QVariantMap &startRequest) const;

    void answer(const QVariantMap &request, const QString &type, const QString &id, const QString &description);
    void setStatus(const QString &id, const QString &status);
    void goOn(const QString &id);
    void beat(const QString &time);
    void sendCustomMessage(const QString &id, const QVariantMap &content);
    void announce(QVariantMap row, const QString &type);

    MessageBus &m_bus;
    const QString m_idPrefix;
    QSet<QString> m_fundAccounts; ///< constant after construction, and so are the ids of events
    int m_outEvent;
    int m_stepEvent; ///< to itself: a strategy is to take its next step
    int m_beatEvent; ///< to itself: a minute has passed

    // Bus thread only
    QMap<QString, Strategy> m_strategies; ///< by id, also those that have stopped
    int m_lastNumber = 0;

    QDateTime m_nextBeat; ///< quote thread only
};

} // namespace sim
