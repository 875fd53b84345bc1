#include "books/GivenOpening.h"

#include "books/Books.h"
#include "exchange/Exchange.h"

namespace sim {

void holdGiven(Books &books, const Exchange &exchange, const QString &tradingAccount, const GivenOpening &given)
{
    for (const GivenOpening::Held &held : given.positions.value_or(QVector<GivenOpening::Held>())) {
        if (const Instrument *instrument = exchange.instrument(held.symbol))
            books.ledgerToOpen(tradingAccount)->holdFromBefore(*instrument, held.isShort, held.qty, held.price);
    }
}

void enterGiven(Books &books, const Exchange &exchange, const QString &tradingAccount, const GivenOpening &given,
                const QDateTime &start)
{
    const qint64 step = exchange.stepAt(start);
    const Prices prices = [&](const QString &symbol) { return exchange.lastPrice(symbol, step).value_or(0); };
    for (const GivenOpening::Entered &entered : given.orders) {
        Order order;
        order.instrument = exchange.instrument(entered.symbol);
        if (!order.instrument)
            continue;
        order.clientId = books.nextClientOrderId();
        order.tradingAccount = tradingAccount;
        order.trader = books.accounts().traders().keys().value(0);
        order.tag = QStringLiteral("manual");
        order.side = entered.side;
        order.qty = entered.qty;
        order.price = entered.price;
        order.entered = start;
        const int number = books.enter(order, books.ledger(tradingAccount)->value(prices).available,
                                       exchange.limits(entered.symbol, step));
        if (books.order(number).isOpen())
            books.accept(number, start);
    }
}

} // namespace sim
