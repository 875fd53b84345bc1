#pragma once

#include <QtGlobal>

class QDateTime;

namespace sim {

class Books;
class Exchange;

/// Fills empty books with what there is when the terminal starts: opening money and positions, and the orders of the
/// day so far, played against the day's candles, so that each deal is one that the market allowed. Before the day's
/// first minute has ended there are no orders.
///
/// Each fund account trades through the first of its trading accounts; the others hold nothing. Everything follows
/// from the seed, the exchange and the accounts; one account's orders do not depend on another's.
void openBooks(Books &books, const Exchange &exchange, quint64 seed, const QDateTime &start);

} // namespace sim
