#pragma once

#include "books/Orders.h"
#include "books/Positions.h"

#include <QMap>
#include <QPair>

namespace sim {

/// What a trading account is worth at given prices. Short positions count as negative in the first three.
struct Valuation {
    Money marketValue;
    Money holdingCost;
    Money openCost;
    Money totalAsset;
    Money margin;       ///< that futures bind
    Money available;    ///< for new orders
    Money withdrawable; ///< may leave the account
};

/// The money and the positions of one trading account.
/// Shares, funds and bonds are paid in full. Futures are settled daily: opening one binds margin and moves no money;
/// closing one pays the profit since the previous close, or since it was opened today.
/// A plain value; whoever changes one from several threads guards it.
class Ledger {
public:
    Ledger() = default;
    explicit Ledger(double openingCash) : m_cash(Money::rounded(openingCash)) {}

    /// Stops sharing memory with the ledger that this one was copied from. Qt's maps would detach by themselves before
    /// a write, but in a way that the thread sanitizer cannot follow when two threads have one each.
    void detach() { m_positions.detach(); }

    /// Adds a position from before today. openPrice: the price at which it was opened.
    void holdFromBefore(const Instrument &instrument, bool isShort, qint64 qty, double openPrice);

    /// Why the account cannot place the order, as a text for its owner; empty when it can. available: the money for new
    /// orders, from the account's value at current prices.
    QString shortage(const Order &order, Money available) const;

    /// Sets aside what the order's open quantity needs, or gives it back. Call release before the order changes and
    /// reserve after.
    void reserve(const Order &order);
    void release(const Order &order);

    /// Books a fill of the order and returns its fee.
    Money fill(const Order &order, double price, qint64 qty);

    /// By symbol and whether they are short. A position that was closed today stays, with quantity 0.
    const QMap<QPair<QString, bool>, Position> &positions() const { return m_positions; }

    /// Ends a trading day. Futures are marked to the settlement prices: the profit since the last settlement, or since
    /// they were opened, becomes cash. What was bought today can be sold from now on, and the sums of the day begin
    /// again.
    void settle(const Prices &settlementPrices);

    /// The quantity that an order may close now; 0 without a position.
    qint64 closableQty(const QString &symbol, bool isShort) const;

    Money cash() const { return m_cash; } ///< with what is set aside
    Money frozenCash() const { return m_frozenCash; }
    Money fees() const { return m_fees; }

    /// The profit of what was closed today: since the previous close, and since it was opened.
    Money closeProfitByDate() const { return m_closeProfitByDate; }
    Money closeProfitByTrade() const { return m_closeProfitByTrade; }

    Valuation value(const Prices &prices) const;

private:
    Position &positionOf(const Instrument &instrument, bool isShort);
    void setAside(const Order &order, int sign);

    QMap<QPair<QString, bool>, Position> m_positions;
    Money m_cash;
    Money m_frozenCash;
    Money m_soldToday; ///< proceeds, which cannot be withdrawn before tomorrow
    Money m_fees;
    Money m_closeProfitByDate;
    Money m_closeProfitByTrade;
};

/// The broker's fee, with tax, for that amount, before the minimum.
Money feeByRate(const Instrument &instrument, Side side, Money amount);

/// The fee of the order's next fill. The fills of an order pay at least the minimum together: the first pays all of it,
/// a later one what the order's fee by rate exceeds what was paid.
Money feeOf(const Order &order, Money amount);

/// The money that it takes to open a position of that amount: all of it, or the margin of futures, and the fee.
Money moneyToOpen(const Order &order, Money amount);

} // namespace sim
