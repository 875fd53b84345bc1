#pragma once

#include "books/DeskEvents.h"
#include "books/Ledger.h"
#include "exchange/MarketRules.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <set>
#include <utility>
#include <vector>

/// The books once more, kept in whole cents from what the desk reports and from the rules in docs/vocabulary.md alone.
class SecondBooks {
public:
    using Cents = qint64;
    using Key = std::pair<QString, bool>; ///< symbol, and whether the position is short

    struct Held {
        const sim::Instrument *instrument = nullptr;
        qint64 qty = 0;
        qint64 sellable = 0; ///< before what orders have set aside
        Cents cost = 0;
        Cents openCost = 0;
    };

    struct Kept {
        sim::Order order; ///< as it was reported last
        Cents feeByRate = 0;
        Cents paid = 0;
        int fills = 0;
    };

    static Cents cents(double yuan) { return std::llround(yuan * 100); }
    static Cents part(Cents money, double ofOne) { return cents(double(money) / 100 * ofOne); }

    /// What the account has at the opening.
    void open(const QString &account, const sim::Ledger &ledger)
    {
        m_cash[account] = cents(ledger.cash().yuan());
        for (const sim::Position &position : ledger.positions()) {
            m_held[account][{position.instrument->symbol, position.isShort}] = {
                position.instrument, position.qty(), position.qty(), cents(position.holdingCost.yuan()),
                cents(position.openCost.yuan())};
        }
    }

    void take(const sim::DeskEvent &event)
    {
        if (const auto *entered = std::get_if<sim::OrderEntered>(&event.what))
            note(entered->order);
        else if (const auto *changed = std::get_if<sim::OrderChanged>(&event.what))
            note(changed->order);
        else if (const auto *executed = std::get_if<sim::OrderExecuted>(&event.what))
            book(executed->order, executed->execution);
    }

    /// Ends a trading day at its closing prices.
    void settle(const sim::Prices &close)
    {
        for (auto &[account, positions] : m_held) {
            for (auto held = positions.begin(); held != positions.end();) {
                if (held->second.qty == 0) {
                    held = positions.erase(held);
                    continue;
                }
                Held &one = held->second;
                one.sellable = one.qty;
                if (isFuture(*one.instrument)) {
                    const Cents value = valueOf(one, close);
                    m_cash[account] += held->first.second ? one.cost - value : value - one.cost;
                    one.cost = value;
                }
                ++held;
            }
        }
    }

    /// The margin that the account's futures bind, and by how much its money does not cover it.
    Cents margin(const QString &account) const
    {
        Cents sum = 0;
        for (const auto &[key, held] : positions(account))
            sum += isFuture(*held.instrument) ? part(held.cost, held.instrument->marginRate) : 0;
        return sum;
    }

    Cents lacking(const QString &account, const sim::Prices &prices) const
    {
        return margin(account) - m_cash.at(account) - profit(account, prices);
    }

    void expectSame(const QString &account, const sim::Ledger &ledger, const sim::Prices &prices) const
    {
        ASSERT_EQ(m_cash.at(account), cents(ledger.cash().yuan())) << qPrintable(account);
        Cents frozen = 0;
        std::map<Key, qint64> blocked;
        for (const QString &id : m_open) {
            const Kept &kept = orders.at(id);
            const sim::Order &order = kept.order;
            if (order.tradingAccount != account)
                continue;
            if (sim::opens(order.side))
                frozen += moneyFor(kept);
            else
                blocked[keyOf(order)] += order.qty - order.filledQty;
        }
        ASSERT_EQ(frozen, cents(ledger.frozenCash().yuan())) << qPrintable(account);
        for (const auto &[key, held] : positions(account)) {
            const sim::Position seen = ledger.positions().value({key.first, key.second});
            ASSERT_EQ(held.qty, seen.qty()) << qPrintable(key.first);
            if (held.qty == 0 && !seen.instrument)
                continue;
            ASSERT_EQ(held.sellable - blocked[key], seen.closableQty()) << qPrintable(key.first);
            ASSERT_EQ(held.cost, cents(seen.holdingCost.yuan())) << qPrintable(key.first);
            ASSERT_EQ(held.openCost, cents(seen.openCost.yuan())) << qPrintable(key.first);
        }
        for (const sim::Position &seen : ledger.positions())
            ASSERT_TRUE(seen.qty() == 0 || positions(account).count({seen.instrument->symbol, seen.isShort}) > 0);
        const sim::Valuation value = ledger.value(prices);
        ASSERT_EQ(margin(account), cents(value.margin.yuan())) << qPrintable(account);
        ASSERT_EQ(m_cash.at(account) + profit(account, prices) - margin(account) - frozen,
                  cents(value.available.yuan()))
            << qPrintable(account);
    }

    std::map<QString, Kept> orders; ///< all that there ever were

private:
    static bool isFuture(const sim::Instrument &instrument) { return instrument.kind == sim::SecurityKind::Future; }
    static Key keyOf(const sim::Order &order) { return {order.instrument->symbol, sim::isOfShort(order.side)}; }

    static Cents valueOf(const Held &held, const sim::Prices &prices)
    {
        return cents(prices(held.instrument->symbol) * double(held.qty) * held.instrument->multiplier);
    }

    static Cents feeByRate(const sim::Order &order, Cents amount)
    {
        const sim::Instrument &instrument = *order.instrument;
        return part(amount, sim::isBuy(order.side) ? instrument.feeRate : instrument.feeRate + instrument.saleTaxRate);
    }

    /// What the order has paid in all when its percentages are so much.
    static Cents feeInAll(const sim::Order &order, Cents byRate)
    {
        return std::max(byRate, cents(order.instrument->minFee));
    }

    /// What an open order that opens has set aside.
    static Cents moneyFor(const Kept &kept)
    {
        const sim::Order &order = kept.order;
        const sim::Instrument &instrument = *order.instrument;
        const double price = order.price > 0 ? order.price : order.highestPrice;
        const Cents amount = cents(price * double(order.qty - order.filledQty) * instrument.multiplier);
        const Cents fee = feeInAll(order, kept.feeByRate + feeByRate(order, amount)) - kept.paid;
        return (isFuture(instrument) ? part(amount, instrument.marginRate) : amount) + fee;
    }

    const std::map<Key, Held> &positions(const QString &account) const
    {
        static const std::map<Key, Held> none;
        const auto found = m_held.find(account);
        return found == m_held.end() ? none : found->second;
    }

    /// Of open futures, since they were marked last.
    Cents profit(const QString &account, const sim::Prices &prices) const
    {
        Cents sum = 0;
        for (const auto &[key, held] : positions(account)) {
            if (isFuture(*held.instrument))
                sum += key.second ? held.cost - valueOf(held, prices) : valueOf(held, prices) - held.cost;
        }
        return sum;
    }

    void note(const sim::Order &order)
    {
        orders[order.id].order = order;
        if (order.isOpen())
            m_open.insert(order.id);
        else
            m_open.erase(order.id);
    }

    void book(const sim::Order &order, const sim::Execution &execution)
    {
        const sim::Instrument &instrument = *order.instrument;
        const QString &account = order.tradingAccount;
        note(order);
        Kept &kept = orders[order.id];
        const Cents amount = cents(execution.price * double(execution.qty) * instrument.multiplier);
        EXPECT_EQ(amount, cents(execution.amount.yuan()));
        kept.feeByRate += feeByRate(order, amount);
        const Cents fee = feeInAll(order, kept.feeByRate) - kept.paid;
        EXPECT_EQ(fee, cents(execution.fee.yuan())) << qPrintable(execution.id);
        kept.paid += fee;
        ++kept.fills;
        m_cash[account] -= fee;
        Held &held = m_held[account][keyOf(order)];
        held.instrument = &instrument;
        if (sim::opens(order.side)) {
            held.qty += execution.qty;
            held.sellable += instrument.soldSameDay ? execution.qty : 0;
            held.cost += amount;
            held.openCost += amount;
            m_cash[account] -= isFuture(instrument) ? 0 : amount;
            return;
        }
        const double closed = double(execution.qty) / double(held.qty);
        const Cents cost = part(held.cost, closed);
        held.qty -= execution.qty;
        held.sellable -= execution.qty;
        held.cost -= cost;
        held.openCost -= part(held.openCost, closed);
        const Cents profit = sim::isOfShort(order.side) ? cost - amount : amount - cost;
        m_cash[account] += isFuture(instrument) ? profit : amount;
    }

    std::set<QString> m_open;                      ///< orders
    std::map<QString, Cents> m_cash;               ///< by trading account
    std::map<QString, std::map<Key, Held>> m_held; ///< the same
};
