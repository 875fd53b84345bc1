#pragma once

#include "books/Money.h"

#include <QDateTime>
#include <QString>

namespace sim {

struct Instrument;

/// What an order does: its direction and, for futures, whether it opens or closes a position.
enum class Side { Buy, Sell, BuyOpen, SellOpen, BuyClose, SellClose, AfterHoursBuy, AfterHoursSell };

enum class PriceType { Limit, Market, AfterHours };

enum class OrderStatus { Reported, PartlyFilled, Filled, PartlyCancelled, Cancelled, Rejected };

bool isBuy(Side side);

/// Whether the order adds to a position rather than takes from one.
bool opens(Side side);

/// Whether the position that the order opens or closes is a short one.
bool isOfShort(Side side);

/// One order and how far it has come. A plain value.
struct Order {
    QString id;              ///< given by the books when the order is entered
    QString clientId;        ///< from Books::nextClientOrderId
    QString exchangeOrderId; ///< empty while the exchange does not know the order
    QString tradingAccount;
    QString trader;
    QString tag;    ///< whatever the page wrote on it
    QString algoId; ///< the strategy instance that placed it, empty for a person's order
    const Instrument *instrument = nullptr;
    Side side = Side::Buy;
    PriceType priceType = PriceType::Limit;
    double price = 0; ///< 0 for orders at market price
    qint64 qty = 0;
    QDateTime entered;

    OrderStatus status = OrderStatus::Reported;
    qint64 dealtQty = 0;
    Money dealtAmount; ///< multiplier counted in
    QDateTime changed; ///< when it came to its status
    QString remark;    ///< why it was rejected

    bool isOpen() const { return status == OrderStatus::Reported || status == OrderStatus::PartlyFilled; }

    /// What can still be dealt; nothing once the order is not open any more.
    qint64 leaveQty() const { return isOpen() ? qty - dealtQty : 0; }

    /// The money that so many at that price are worth.
    Money amount(double price, qint64 qty) const;

    /// Of its deals, 0 when there is none.
    double averagePrice() const;

    /// The price to set money aside at: the limit, or the worst price that an order without one can get.
    double reservePrice() const;
};

/// Whether it trades at the fixed price of the close, once that is known, rather than during the day.
bool isAfterHours(const Order &order);

/// Which of the exchange's rules for quantities and prices the order breaks, for its owner to read; empty when none.
QString violatedRule(const Order &order);

/// One deal of an order.
struct Execution {
    QString id;
    int order = 0; ///< its number in Books::orders()
    QDateTime time;
    double price = 0;
    qint64 qty = 0;
    Money amount;
    Money fee;
};

} // namespace sim
