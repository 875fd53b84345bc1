#pragma once

#include "books/Money.h"
#include "books/Orders.h"

#include <QMap>
#include <QPair>
#include <QString>

#include <functional>

namespace sim {

/// The latest price of a security, by symbol.
using Prices = std::function<double(const QString &symbol)>;

/// What a trading account holds of one security in one direction. A plain value; quantities and costs are positive
/// for short positions too.
struct Position {
    const Instrument *instrument = nullptr;
    bool isShort = false;
    qint64 openingQty = 0; ///< held before the day began
    qint64 openedQty = 0;  ///< today
    qint64 closedQty = 0;  ///< today
    qint64 frozenQty = 0;  ///< set aside for orders that close it
    Money openCost;        ///< what is held cost when it was opened
    Money holdingCost;     ///< the same; for futures what came from before today counts at yesterday's close

    qint64 qty() const { return openingQty + openedQty - closedQty; }

    /// What an order may close now. What is bought today of shares and funds can only be sold tomorrow.
    qint64 closableQty() const;

    Money marketValue(double price) const;
};

/// What a trading account is worth at given prices. Short positions count as negative in the first three.
struct Valuation {
    Money marketValue;
    Money holdingCost;
    Money openCost;
    Money totalAsset;
    Money available;    ///< money for new orders
    Money withdrawable; ///< money that may leave the account
};

/// The money and the positions of one trading account.
///
/// Shares, funds and bonds are paid in full. Futures are settled daily: opening one moves no money, it binds margin;
/// closing one moves the profit since it was opened or since yesterday's close.
/// A plain value; whoever changes one from several threads guards it.
class Ledger {
public:
    Ledger() = default;
    explicit Ledger(double openingCash) : m_cash(Money::rounded(openingCash)) {}

    /// Stops sharing memory with the ledger that it is a copy of. Qt's maps would stop by themselves before either is
    /// written, but in a way that the thread sanitizer cannot follow when two threads have one each.
    void detach() { m_positions.detach(); }

    /// A position from before today. openPrice: what it was opened at.
    void holdFromBefore(const Instrument &instrument, bool isShort, qint64 qty, double openPrice);

    /// Why the account cannot place the order, for its owner to read; empty when it can. available: what its value at
    /// current prices leaves for new orders.
    QString shortage(const Order &order, Money available) const;

    /// Sets aside what the order's open quantity needs, or gives it back. Call release before the order changes and
    /// reserve after.
    void reserve(const Order &order);
    void release(const Order &order);

    /// Enters a deal of the order, and gives its fee.
    Money deal(const Order &order, double price, qint64 qty);

    /// By symbol and whether they are short. Those that were closed today are there still, with nothing in them.
    const QMap<QPair<QString, bool>, Position> &positions() const { return m_positions; }

    /// What an order may close now; nothing of what is not held.
    qint64 closableQty(const QString &symbol, bool isShort) const;

    Money cash() const { return m_cash; } ///< with what is set aside
    Money frozenCash() const { return m_frozenCash; }
    Money fees() const { return m_fees; }

    /// The profit of what was closed today: since yesterday's close, and since it was opened.
    Money closeProfitByDate() const { return m_closeProfitByDate; }
    Money closeProfitByTrade() const { return m_closeProfitByTrade; }

    Valuation value(const Prices &prices) const;

private:
    Position &positionOf(const Instrument &instrument, bool isShort);
    void setAside(const Order &order, int sign);

    QMap<QPair<QString, bool>, Position> m_positions;
    Money m_cash;
    Money m_frozenCash;
    Money m_soldToday; ///< proceeds, which stay in the account until tomorrow
    Money m_fees;
    Money m_closeProfitByDate;
    Money m_closeProfitByTrade;
};

/// What a broker takes for a deal of that amount.
Money feeOf(const Instrument &instrument, Side side, Money amount);

/// The money that opening so much needs, with its fee: all of it, or the margin of futures.
Money moneyToOpen(const Instrument &instrument, Side side, Money amount);

} // namespace sim
