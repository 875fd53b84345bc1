#pragma once

#include "books/TradingDesk.h"
#include "exchange/Exchange.h"
#include "exchange/Listing.h"
#include "exchange/TestClock.h"

#include <gtest/gtest.h>

/// How a market differs from the usual one.
struct DeskTerms {
    QVector<sim::Instrument> listed; ///< without them 120 are made up
    sim::MarketRules rules;
    QVector<sim::Halt> halts;
    sim::OpeningTerms opening;
    sim::OrderDelays delays;
};

/// A market of generated securities, the desk of two accounts and all events that it has reported. The clock stands
/// still.
struct DeskWorld {
    explicit DeskWorld(const char *start, quint64 seed = 7, const sim::OrderDelays &delays = {})
        : DeskWorld(start, seed, DeskTerms{{}, {}, {}, {}, delays})
    {
    }

    DeskWorld(const char *start, quint64 seed, const DeskTerms &terms)
        : clock(at(start))
        , exchange(terms.listed.isEmpty() ? sim::listing({}, 120, seed, clock.now().date(), terms.rules) : terms.listed,
                   seed, clock.now().date(), clock, terms.rules, terms.halts)
        , desk(
              accounts, QStringLiteral("20250303"), exchange, seed, clock.now(),
              [this](const sim::DeskEvents &more) { events.insert(events.end(), more.begin(), more.end()); },
              terms.opening, terms.delays, [this] { return divisions > 0 && divisions-- > 0; })
    {
    }

    const sim::Instrument &any(sim::SecurityKind kind, int number = 0) const
    {
        for (const sim::Instrument &instrument : exchange.instruments()) {
            if (instrument.kind == kind && number-- == 0)
                return instrument;
        }
        ADD_FAILURE() << "no such security";
        return exchange.instruments().first();
    }

    /// A security with trading after hours.
    const sim::Instrument &growthShare() const
    {
        for (const sim::Instrument &instrument : exchange.instruments()) {
            if (instrument.afterHours)
                return instrument;
        }
        ADD_FAILURE() << "no such security";
        return exchange.instruments().first();
    }

    sim::Order order(const sim::Instrument &instrument, sim::Side side, qint64 qty, double price = 0) const
    {
        sim::Order order;
        order.tradingAccount =
            instrument.kind == sim::SecurityKind::Future ? QStringLiteral("C1") : QStringLiteral("A1");
        order.instrument = &instrument;
        order.side = side;
        order.qty = qty;
        order.priceType = price > 0 ? sim::PriceType::Limit : sim::PriceType::Market;
        order.price = price;
        return order;
    }

    /// The last price at that time, plus that many ticks.
    double price(const sim::Instrument &instrument, const QDateTime &time, int ticks = 0) const
    {
        const double last = exchange.lastPrice(instrument.symbol, exchange.stepAt(time)).value_or(0);
        return instrument.priceOf(instrument.ticksOf(last) + ticks);
    }

    sim::Order place(const sim::Order &order, const QDateTime &now) { return desk.place({order}, now).front(); }

    /// Places the order and plays until the exchange has it.
    sim::Order placeAtExchange(const sim::Order &order, const QDateTime &time)
    {
        const sim::Order placed = place(order, time);
        while (const std::optional<QDateTime> next = desk.nextMessage())
            desk.advance(*next);
        return now(placed);
    }

    sim::Order now(const sim::Order &order) const { return desk.order(order.id).value(); }

    std::vector<sim::Execution> executionsOf(const sim::Order &order) const
    {
        std::vector<sim::Execution> executions;
        const sim::TradingDesk::Reader books = desk.read();
        for (const sim::Execution &execution : books->executions()) {
            if (books->order(execution.order).id == order.id)
                executions.push_back(execution);
        }
        return executions;
    }

    template <typename Event>
    std::vector<Event> reported() const
    {
        std::vector<Event> list;
        for (const sim::DeskEvent &event : events) {
            if (const Event *one = std::get_if<Event>(&event.what))
                list.push_back(*one);
        }
        return list;
    }

    const TestClock clock;
    sim::Exchange exchange;
    const sim::Accounts accounts{
        {{QStringLiteral("T1"), QStringLiteral("甲")}},
        {{QStringLiteral("S1"), QStringLiteral("一"), sim::StockFund, {QStringLiteral("A1"), QStringLiteral("A2")}},
         {QStringLiteral("F1"), QStringLiteral("期"), sim::FuturesFund, {QStringLiteral("C1")}}}};
    sim::DeskEvents events;
    int divisions = 0;     ///< fills that are still to be divided
    sim::TradingDesk desk; ///< last: it uses all of the above
};

/// A second in which messages about orders arrive, and no step is played where it follows one.
inline QDateTime soonAfter(const QDateTime &time)
{
    return time.addSecs(1);
}

/// Starts before the first order of the day: the accounts have money and positions.
class DeskTest : public testing::Test {
protected:
    static constexpr const char *kMorning = "2025-03-03 09:20:00";

    DeskWorld world{kMorning};
    sim::TradingDesk &desk = world.desk;
    const sim::Instrument &share = world.any(sim::SecurityKind::Share);
};
