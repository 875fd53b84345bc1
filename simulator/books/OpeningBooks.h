#pragma once

#include "books/GivenOpening.h"
#include "exchange/Instrument.h"

#include <QMap>

class QDateTime;

namespace sim {

class Books;
class Exchange;

/// How much each fund account has at the opening. A plain value.
struct OpeningTerms {
    int orders = 80; ///< of the day so far

    /// Positions of each kind. Stock funds hold the first three kinds, futures funds the last one.
    QMap<SecurityKind, int> positions{
        {SecurityKind::Share, 12}, {SecurityKind::Fund, 3}, {SecurityKind::Bond, 3}, {SecurityKind::Future, 4}};

    QMap<QString, GivenOpening> given; ///< by fund account
};

/// Fills empty books for the start of the terminal: opening money and positions, and the orders of the day so far. The
/// orders are played against the day's candles, so that each fill lies inside a candle. Before the end of the day's
/// first minute there are no orders. Each fund account trades through its first trading account; its other ones are
/// empty. The result depends on seed, exchange, accounts and terms only, and the orders of one account do not depend on
/// the others.
void openBooks(Books &books, const Exchange &exchange, quint64 seed, const QDateTime &start,
               const OpeningTerms &terms = {});

} // namespace sim
