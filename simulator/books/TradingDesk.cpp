#include "books/TradingDesk.h"

#include "books/OpeningBooks.h"

namespace sim {

TradingDesk::TradingDesk(const Accounts &accounts, const QString &orderIdPrefix, const Exchange &exchange, quint64 seed,
                         const QDateTime &start)
    : m_books(accounts, orderIdPrefix)
{
    openBooks(m_books, exchange, seed, start);
}

std::optional<Ledger> TradingDesk::ledger(const QString &tradingAccount) const
{
    const Reader books = read();
    const Ledger *ledger = books->ledger(tradingAccount);
    return ledger ? std::make_optional(*ledger) : std::nullopt;
}

std::optional<Order> TradingDesk::order(const QString &id) const
{
    const Reader books = read();
    const int number = books->orderNumber(id);
    return number < 0 ? std::nullopt : std::make_optional(books->orders()[number]);
}

} // namespace sim
