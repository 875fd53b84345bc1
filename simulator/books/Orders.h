#pragma once

#include "books/Money.h"

#include <QDateTime>
#include <QString>

namespace sim {

struct Instrument;
struct PriceLimits;

/// What an order does: its direction and, for futures, whether it opens or closes a position.
enum class Side { Buy, Sell, BuyOpen, SellOpen, BuyClose, SellClose, AfterHoursBuy, AfterHoursSell };

enum class PriceType { Limit, Market, AfterHours };

enum class OrderStatus {
    ToBeSent,      ///< entered, still at the broker
    Sent,          ///< on its way to the exchange
    Reported,      ///< accepted by the exchange
    PartlyFilled,  ///< the rest is open
    Filled,        ///< whole
    ToBeCancelled, ///< its owner wants it cancelled, and the exchange has not done so yet: it can still be filled
    PartlyCancelled,
    Cancelled,
    Rejected, ///< by the broker or by the exchange
};

bool isBuy(Side side);

/// Whether the order adds to a position rather than takes from one.
bool opens(Side side);

/// Whether the position that the order opens or closes is a short one.
bool isOfShort(Side side);

/// One order and its state. A plain value.
struct Order {
    QString id;              ///< given by the books when the order is entered
    QString clientId;        ///< from Books::nextClientOrderId
    QString exchangeOrderId; ///< empty until the exchange has accepted the order
    QString tradingAccount;
    QString trader;
    QString tag;    ///< text of the page's choice
    QString algoId; ///< the strategy instance that placed it, empty for a person's order
    const Instrument *instrument = nullptr;
    Side side = Side::Buy;
    PriceType priceType = PriceType::Limit;
    double price = 0;        ///< 0 for orders at market price
    double highestPrice = 0; ///< PriceLimits::highest when it was entered
    qint64 qty = 0;
    QDateTime entered;

    OrderStatus status = OrderStatus::ToBeSent;
    qint64 filledQty = 0;
    Money filledAmount; ///< multiplier included
    Money feeByRate;    ///< of its fills, before the minimum
    QDateTime changed;  ///< when it got its status
    QString remark;     ///< why it was rejected, or not cancelled, or not filled whole

    /// Whether it can still change.
    bool isOpen() const;

    bool isAtExchange() const { return !exchangeOrderId.isEmpty(); }

    /// The quantity that can still be filled; 0 when the order is not open.
    qint64 leaveQty() const { return isOpen() ? qty - filledQty : 0; }

    /// The money for that price and quantity.
    Money amount(double price, qint64 qty) const;

    /// Of its fills; 0 without one.
    double averagePrice() const;

    /// The price to set money aside at: the order's own, or for an order at market price the highest possible one.
    double reservePrice() const { return price > 0 ? price : highestPrice; }
};

/// Whether the order trades after the close, at the closing price.
bool isAfterHours(const Order &order);

/// Which rule for quantities and prices the order breaks, as a text for its owner; empty when it breaks none.
QString violatedRule(const Order &order, const PriceLimits &limits);

/// One fill of an order. A plain value.
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
