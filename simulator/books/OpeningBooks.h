#pragma once

#include <QtGlobal>

class QDateTime;

namespace sim {

class Books;
class Exchange;

/// Fills empty books for the start of the terminal: opening money and positions, and the orders of the day so far. The
/// orders are played against the day's candles, so that each fill lies inside a candle. Before the end of the day's
/// first minute there are no orders. Each fund account trades through its first trading account; its other ones are
/// empty. The result depends on seed, exchange and accounts only, and the orders of one account do not depend on the
/// others.
void openBooks(Books &books, const Exchange &exchange, quint64 seed, const QDateTime &start);

} // namespace sim
