#pragma once

#include "books/Books.h"
#include "books/DeskEvents.h"
#include "books/OpenOrders.h"

#include <QMap>
#include <QSet>
#include <QStringList>

#include <functional>
#include <mutex>
#include <optional>

namespace sim {

class Exchange;

/// The broker's trading desk: takes orders and cancels, plays what rests at the exchange against its quotes, and keeps
/// the books while everybody reads them.
/// Made and destroyed by the Terminal. Everything may be called from any thread: one mutex guards the books. It never
/// lets anybody write in the books past it, never asks for the time, and never calls its listener with the books
/// locked.
class TradingDesk {
public:
    /// Keeps everybody else out of the books while it lives: keep it for a statement or a short block, and nothing
    /// that it points to for longer.
    class Reader {
    public:
        const Books &operator*() const { return m_books; }
        const Books *operator->() const { return &m_books; }

    private:
        friend class TradingDesk;
        Reader(std::mutex &mutex, const Books &books) : m_lock(mutex), m_books(books) {}

        const std::unique_lock<std::mutex> m_lock;
        const Books &m_books;
    };

    /// Is told what has changed, before the call that changed it returns and in the order of the changes, on the
    /// thread of some such call and by one thread at a time. It may read the desk, but not write.
    using Listener = std::function<void(const DeskEvents &)>;

    struct CancelRequest {
        QString orderId;
        QString tradingAccount;
    };

    /// Opens the books as they are at the start. Accounts and exchange must outlive the desk.
    TradingDesk(const Accounts &accounts, const QString &orderIdPrefix, const Exchange &exchange, quint64 seed,
                const QDateTime &start, Listener listener);

    Reader read() const { return {m_mutex, m_books}; }

    /// Copies; nothing for an unknown one.
    std::optional<Ledger> ledger(const QString &tradingAccount) const;
    std::optional<Order> order(const QString &id) const;

    /// A fresh client order identifier, never given twice.
    QString nextClientOrderId() { return m_books.nextClientOrderId(); }

    // Writing. Time does not go back: an earlier one than was given before counts as that one. Each call plays what
    // happened up to its time first, so that the outcome does not depend on who calls when, but for the times.

    /// Enters orders of known trading accounts, and gives them as they then stand. One that breaks a rule or that the
    /// account cannot afford is rejected; the others do not mind.
    std::vector<Order> place(const std::vector<Order> &orders, const QDateTime &now);

    /// Why each of the orders cannot be cancelled, for its owner to read; empty for one that is.
    QStringList cancel(const std::vector<CancelRequest> &requests, const QDateTime &now);

    /// Plays the exchange's steps since the last call, one by one. What rests there is dealt in when the price
    /// reaches it: limited orders in one or two parts, at the price of the step and so within their limit; what came
    /// during a step can be dealt in from the next one on.
    void advance(const QDateTime &now);

private:
    Q_DISABLE_COPY(TradingDesk)

    using PositionKey = QPair<QString, bool>; ///< as in Ledger::positions

    // All of these with the mutex held.
    const Order &orderAt(int number) const { return m_books.orders()[size_t(number)]; }
    void passTo(const QDateTime &now); ///< the clock alone
    bool playStep(qint64 lastStep);    ///< the next one; false when there is nothing to play up to the last
    void playAllSteps(qint64 lastStep);
    void deal(const OpenOrders::Reached &reached, const QDateTime &time);
    QString cancel(const CancelRequest &request);
    qint64 qtyToDeal(const Order &order) const;
    void touch(const Order &order, bool isDeal);
    void noteTouched(); ///< ends an operation or a step: what it touched is noted, once each

    void report(); ///< without the mutex

    const Exchange &m_exchange;
    const quint64 m_key;
    const Listener m_listener;
    std::mutex m_reporting; ///< held while the listener is called; taken before m_mutex

    // Guarded by m_mutex
    mutable std::mutex m_mutex;
    Books m_books;
    OpenOrders m_open;
    QDateTime m_now;
    qint64 m_step;                              ///< the last one that was played
    QMap<QString, QSet<PositionKey>> m_touched; ///< by trading account
    DeskEvents m_events;                        ///< not reported yet
};

} // namespace sim
