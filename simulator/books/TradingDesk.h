#pragma once

#include "books/Books.h"
#include "books/DeskEvents.h"
#include "books/OpenOrders.h"
#include "books/OpeningBooks.h"

#include <QMap>
#include <QSet>
#include <QStringList>

#include <functional>
#include <mutex>
#include <optional>

namespace sim {

class Exchange;

/// The broker's trading desk: takes orders and cancels, fills open orders as the quotes reach their prices, and keeps
/// the books. Made and destroyed by the Terminal. Everything may be called from any thread: one mutex guards the books.
/// Nobody else writes to the books. Its only source of time is the `now` of the calls. It never calls its listener
/// while the books are locked.
class TradingDesk {
public:
    /// Locks the books while it exists. Keep it for a statement or a short block, and no pointer into the books longer
    /// than that.
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

    /// Receives the changes in their order, before the call that made them returns. It is called by one thread at a
    /// time, not always the one that made the change. It may read the desk, but not write.
    using Listener = std::function<void(const DeskEvents &)>;

    struct CancelRequest {
        QString orderId;
        QString tradingAccount;
    };

    /// Opens the books for the start time. Accounts and exchange must outlive the desk.
    TradingDesk(const Accounts &accounts, const QString &orderIdPrefix, const Exchange &exchange, quint64 seed,
                const QDateTime &start, Listener listener, const OpeningTerms &opening = {});

    Reader read() const { return {m_mutex, m_books}; }

    /// Copies; nothing for an unknown account or identifier.
    std::optional<Ledger> ledger(const QString &tradingAccount) const;
    std::optional<Order> order(const QString &id) const;

    /// A new, unique client order identifier.
    QString nextClientOrderId() { return m_books.nextClientOrderId(); }

    // Writing. A `now` before an earlier one counts as the earlier one. Each call first plays all steps up to its
    // `now`, so that the result depends on the times of the calls only, not on how often advance was called.

    /// Enters orders of known trading accounts and returns them with their status. An order that breaks a rule or costs
    /// more than the account has is rejected; the others are entered.
    std::vector<Order> place(const std::vector<Order> &orders, const QDateTime &now);

    /// Cancels open orders. Returns for each request why it failed, as a text for its owner; empty for a cancelled
    /// order.
    QStringList cancel(const std::vector<CancelRequest> &requests, const QDateTime &now);

    /// Plays the exchange's steps since the last call, one by one. An open order fills at the step's price as soon as
    /// that price is within its limit, at the earliest in the step after its entry. Orders with a limit fill in one or
    /// two parts.
    void advance(const QDateTime &now);

private:
    Q_DISABLE_COPY(TradingDesk)

    using PositionKey = QPair<QString, bool>; ///< as in Ledger::positions

    // Called with the mutex held.
    const Order &orderAt(int number) const { return m_books.order(number); }
    void moveClock(const QDateTime &now);
    bool playStep(qint64 lastStep); ///< plays the next step; false when there is none up to the last
    void playAllSteps(qint64 lastStep);
    void fill(const OpenOrders::Fill &fillable, const QDateTime &time);
    void beginDay();
    void settleDay();
    void cancelByBroker(int number, const QString &reason);
    int enter(const Order &order, Money available);
    QString cancel(const CancelRequest &request);
    qint64 qtyToFill(const Order &order) const;
    void touch(const Order &order, bool isFill);
    void reportTouched(); ///< adds one event for each touched position and account, at the end of a call or step

    void report(); ///< called without the mutex

    const Exchange &m_exchange;
    const quint64 m_key;
    const Listener m_listener;
    std::mutex m_reporting; ///< held while the listener is called; taken before m_mutex

    // Guarded by m_mutex
    mutable std::mutex m_mutex;
    Books m_books;
    OpenOrders m_open;
    QDateTime m_now;
    qint64 m_step;                              ///< the last step that was played
    QMap<QString, QSet<PositionKey>> m_touched; ///< by trading account
    DeskEvents m_events;                        ///< not reported yet
};

} // namespace sim
