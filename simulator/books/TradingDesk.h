#pragma once

#include "books/Books.h"
#include "books/DeskEvents.h"
#include "books/Matching.h"
#include "books/OpeningBooks.h"
#include "books/OrderMessages.h"

#include <QMap>
#include <QSet>
#include <QStringList>

#include <functional>
#include <mutex>
#include <optional>
#include <set>

namespace sim {

class Exchange;

/// The broker's trading desk: takes orders and cancels, plays their way to the exchange and what fills them there, and
/// keeps the books. Made and destroyed by the Terminal. Everything may be called from any thread: one mutex guards the
/// books. Nobody else writes to the books. Its only source of time is the `now` of the calls. It never calls its
/// listener while the books are locked.
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
        bool comesTooLate = false; ///< the exchange fills the order at its limit just before
    };

    /// Whether the next order that was entered since the start fills in parts, instead of whole at once. Called with
    /// the books locked.
    using Divides = std::function<bool()>;

    /// Opens the books for the start time. Accounts and exchange must outlive the desk.
    TradingDesk(const Accounts &accounts, const QString &orderIdPrefix, const Exchange &exchange, quint64 seed,
                const QDateTime &start, Listener listener, const OpeningTerms &opening = {},
                const OrderDelays &delays = {}, const Divides &divides = {});

    Reader read() const { return {m_mutex, m_books}; }

    /// Copies; nothing for an unknown account or identifier.
    std::optional<Ledger> ledger(const QString &tradingAccount) const;
    std::optional<Order> order(const QString &id) const;

    /// Adds the orders that wait at the exchange to the five levels of a quote.
    void addOrdersTo(Quote &quote) const;

    /// When the next message about an order arrives; nothing when there is none.
    std::optional<QDateTime> nextMessage() const;

    /// A new, unique client order identifier.
    QString nextClientOrderId() { return m_books.nextClientOrderId(); }

    // Writing. A `now` before an earlier one counts as the earlier one. Each call first plays what happens up to its
    // `now`, so that the result depends on the times of the calls only, not on how often advance was called.

    /// Enters orders of known trading accounts and returns them as they were entered. An order that breaks a rule or
    /// costs more than the account has is rejected; the others are to be sent.
    std::vector<Order> place(const std::vector<Order> &orders, const QDateTime &now);

    /// Asks the exchange to cancel open orders. Returns for each request why it was refused, as a text for its owner;
    /// empty for an order that is to be cancelled. Such an order can still be filled.
    QStringList cancel(const std::vector<CancelRequest> &requests, const QDateTime &now);

    /// Plays the exchange's steps and the messages about orders since the last call, one by one, each at its time. An
    /// order can fill in the steps after its acceptance: see Matching.
    void advance(const QDateTime &now);

private:
    Q_DISABLE_COPY(TradingDesk)

    using PositionKey = QPair<QString, bool>; ///< as in Ledger::positions

    // Called with the mutex held.
    const Order &orderAt(int number) const { return m_books.order(number); }
    void moveClock(const QDateTime &now);
    bool playNext(const QDateTime &now); ///< plays the next step or message; false when there is none by then
    void playAll(const QDateTime &now);
    void playStep();
    void playMessage();
    void reachExchange(int number);
    void cancelAtExchange(int number);
    void fill(const Matching::Fill &fill);
    QString whyNotCancelled(const CancelRequest &request) const;
    void note(decltype(DeskEvent::what) what);
    void noteChange(int number);
    void beginDay();
    void settleDay();
    void cancelByBroker(int number, const QString &reason);
    /// refusal: why the broker refuses the order. sent: gets its number if it is accepted.
    void enter(const Order &order, Money available, const QString &refusal, std::vector<int> &sent);
    void touch(const Order &order, bool isFill);
    void reportTouched(); ///< adds one event for each touched position and account, at the end of what was played

    void report(); ///< called without the mutex

    const Exchange &m_exchange;
    const Listener m_listener;
    std::mutex m_reporting; ///< held while the listener is called; taken before m_mutex

    // Guarded by m_mutex
    mutable std::mutex m_mutex;
    Books m_books;
    OrderMessages m_messages;
    std::set<int> m_filledBeforeCancel; ///< the orders whose cancels come too late
    Matching m_matching;
    Matching::Divides m_divides; ///< or empty
    QDateTime m_now;
    qint64 m_step;                              ///< the last step that was played
    QMap<QString, QSet<PositionKey>> m_touched; ///< by trading account
    DeskEvents m_events;                        ///< not reported yet
};

} // namespace sim
