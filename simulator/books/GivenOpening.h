#pragma once

#include "books/Orders.h"

#include <QVector>

#include <optional>

namespace sim {

class Books;
class Exchange;

/// What one fund account begins with where it is not made up. A plain value.
struct GivenOpening {
    struct Held {
        QString symbol;
        bool isShort;
        qint64 qty;
        double price; ///< at which it was opened
    };
    struct Entered { ///< an order with a limit, entered at the start
        QString symbol;
        Side side;
        qint64 qty;
        double price;
    };

    std::optional<double> cash;
    std::optional<QVector<Held>> positions; ///< then there are no made-up ones, and no made-up orders
    QVector<Entered> orders;
};

/// Books the positions that are given.
void holdGiven(Books &books, const Exchange &exchange, const QString &tradingAccount, const GivenOpening &given);

/// Enters the orders that are given.
void enterGiven(Books &books, const Exchange &exchange, const QString &tradingAccount, const GivenOpening &given,
                const QDateTime &start);

} // namespace sim
