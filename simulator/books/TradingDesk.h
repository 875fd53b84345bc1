#pragma once

#include "books/Books.h"

#include <mutex>
#include <optional>

class QDateTime;

namespace sim {

class Exchange;

/// The broker's trading desk: keeps the books while everybody reads and writes them.
/// Made and destroyed by the Terminal. Everything may be called from any thread: one mutex guards the books. It never
/// lets anybody write in the books past it.
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

    /// Opens the books as they are at the start. Accounts and exchange must outlive the desk.
    TradingDesk(const Accounts &accounts, const QString &orderIdPrefix, const Exchange &exchange, quint64 seed,
                const QDateTime &start);

    Reader read() const { return {m_mutex, m_books}; }

    /// Copies; nothing for an unknown one.
    std::optional<Ledger> ledger(const QString &tradingAccount) const;
    std::optional<Order> order(const QString &id) const;

    /// A fresh client order identifier, never given twice.
    QString nextClientOrderId() { return m_books.nextClientOrderId(); }

private:
    Q_DISABLE_COPY(TradingDesk)

    mutable std::mutex m_mutex;
    Books m_books; ///< guarded by m_mutex
};

} // namespace sim
