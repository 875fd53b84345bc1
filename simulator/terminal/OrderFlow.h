#pragma once

#include "books/TradingDesk.h"
#include "platform/ScenarioEvents.h"

#include <deque>
#include <vector>

namespace sim {

class Agenda;
class Exchange;

/// A trading programme of the scenario: it enters orders all the time and cancels each a second later, through the desk
/// as anybody else. Its limits are the lowest that the exchange accepts, so that hardly any order fills. It trades
/// while the market does. Made by the Terminal. It acts on the agenda, one action at a time; only skipTo and burst are
/// called from outside, from an action of the agenda.
class OrderFlow {
public:
    /// All but the terms must outlive the agenda.
    OrderFlow(const OrderFlowTerms &terms, const Accounts &accounts, TradingDesk &desk, const Exchange &exchange,
              Agenda &agenda, quint64 seed);

    /// Begins at that time.
    void start(const QDateTime &time);

    /// Time jumps there. The programme enters nothing on the way.
    void skipTo(const QDateTime &time) { m_skipsUntil = time; }

    /// Enters so many orders at once, which are cancelled a second later.
    void burst(int orders, const QDateTime &time);

private:
    using Cancels = std::vector<TradingDesk::CancelRequest>;

    void beat(const QDateTime &time);
    Cancels place(int count, const QDateTime &time);
    Order order(const QDateTime &time);

    const OrderFlowTerms m_terms;
    const FundAccount m_fund; ///< of the terms, or the first one
    const QString m_trader;
    TradingDesk &m_desk;
    const Exchange &m_exchange;
    Agenda &m_agenda;
    const quint64 m_key;
    std::vector<const Instrument *> m_instruments; ///< constant after construction; the cheapest ones

    // Actions of the agenda only
    QDateTime m_skipsUntil;
    qint64 m_ordered = 0;           ///< how many orders it has made
    qint64 m_millis = 0;            ///< for which it has traded
    qint64 m_placed = 0;            ///< in that time
    std::deque<Cancels> m_toCancel; ///< for each of the last beats: what it has entered
};

} // namespace sim
