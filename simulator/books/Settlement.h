#pragma once

#include "books/Orders.h"

#include <QStringList>

#include <vector>

namespace sim {

class Books;
class Exchange;

/// What the broker does with the books between two trading days. The TradingDesk calls it, and plays the orders.
namespace settlement {

/// The open orders that end with the trading day of the step: those that were entered before its trading was over.
/// Later ones are for the next day.
std::vector<int> expiringOrders(const Books &books, const Exchange &exchange, qint64 step);

/// The open orders of the account.
std::vector<int> openOrders(const Books &books, const QString &tradingAccount);

/// Settles all accounts at the closing prices of the step's day.
void settle(Books &books, const Exchange &exchange, qint64 step);

/// Forgets the orders and executions of the days before the step's.
void forgetPastDays(Books &books, const Exchange &exchange, qint64 step);

/// The trading accounts whose money does not cover the margin of their futures, at the prices of the step.
QStringList accountsShortOfMargin(const Books &books, const Exchange &exchange, qint64 step);

/// The orders by which the broker closes as much of the account's futures as the margin lacks: the position that binds
/// most first, at the worst price of the day. The account must have no open orders.
std::vector<Order> closingOrders(const Books &books, const Exchange &exchange, const QString &tradingAccount,
                                 qint64 step);

} // namespace settlement

} // namespace sim
