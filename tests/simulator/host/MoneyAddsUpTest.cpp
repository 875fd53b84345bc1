#include "TerminalTest.h"
#include "host/OrderEntry.h"

#include "Tessar_Values.h"
#include "Varnel_Fields.h"
#include "exchange/Random.h"

#include <QSet>

#include <cmath>

using namespace sim;
using namespace Tessar_Fields;

// Reads everything through the host's interfaces and computes it again, in whole cents, from the rules in
// docs/vocabulary.md.

namespace {

using Cents = qint64;

Cents cents(double yuan)
{
    return std::llround(yuan * 100);
}

Cents cents(const QVariantMap &record, const QString &field)
{
    EXPECT_TRUE(record.contains(field)) << qPrintable(field);
    const double yuan = record.value(field).toDouble();
    EXPECT_EQ(double(cents(yuan)) / 100, yuan) << qPrintable(field); // whole cents
    return cents(yuan);
}

Cents part(Cents money, double ofOne)
{
    return std::llround(double(money) / 100 * ofOne * 100);
}

bool isBuying(const QVariantMap &record)
{
    return record.value(Security::side).toString().contains(QLatin1String("Buy"));
}

bool isClosing(const QVariantMap &record)
{
    const QString side = record.value(Security::side).toString();
    return side.endsWith(QLatin1String("Close")) || side == QLatin1String("Sell") ||
           side == QLatin1String("AfterHoursSell");
}

Cents fee(const Instrument &instrument, bool buys, Cents amount)
{
    switch (instrument.kind) {
    case SecurityKind::Share:
        return part(amount, buys ? 0.00025 : 0.00075);
    case SecurityKind::Fund:
        return part(amount, 0.0001);
    case SecurityKind::Bond:
        return part(amount, 0.00002);
    case SecurityKind::Future:
        return part(amount, 0.000023);
    }
    return 0;
}

constexpr double kMargin = 0.12;

/// The figures of an account.
struct Account {
    bool isFutures = false;
    Cents cash = 0;
    Cents frozen = 0;
    Cents holdingCost = 0; // short ones negative
    Cents openCost = 0;
    Cents profitByDate = 0;
    Cents profitByTrade = 0;
    QMap<QString, qint64> blocked; // quantity that cannot be closed now, by symbol and direction
    QSet<QString> held;            // the listed positions
};

struct Flow {
    Cents netBought = 0;
    Cents fees = 0;
};

class MoneyAddsUpTest : public StandingTerminalTest, public testing::WithParamInterface<int> {
protected:
    MoneyAddsUpTest()
    {
        if (GetParam() % 2 == 0)
            terminal.faults().set({Fault::FillInParts, 1000000});
        for (const FundAccount &fund : terminal.accounts().fundAccounts(AllFunds))
            m_accounts.append(fund.tradingAccounts.first());
        takeExecutions();
        m_flows.clear();
        for (const QString &account : qAsConst(m_accounts))
            m_before[account] = seen(account);
    }

    const Instrument &instrumentOf(const QVariantMap &record) const
    {
        return *terminal.exchange().instrument(record.value(Security::symbol).toString());
    }

    static QList<QVariantMap> openOrders()
    {
        int total = 0;
        return BusinessDataInterface::GetOrderListByCustomKey(
            {{Security::orderStatus,
              QStringList{QStringLiteral("ToBeSent"), QStringLiteral("Sent"), QStringLiteral("Reported"),
                          QStringLiteral("PartlyFilled"), QStringLiteral("ToBeCancelled")}}},
            total, 0, 0, QList<QString>(), QStringList());
    }

    static QList<QVariantMap> positionsOf(const QString &account)
    {
        return BusinessDataInterface::GetPositionListByAccount({{UserAccount::tradingAccount, account}}, QString(),
                                                               QString(), QString(), QString(), QString(), QString());
    }

    static QString positionKey(const QVariantMap &record)
    {
        return record.value(Security::symbol).toString() + QLatin1Char(' ') +
               record.value(Security::positionFlag).toString();
    }

    Account seen(const QString &account) const
    {
        const QVariantMap details = CBusinessDataBase::GetInstance()->GetAccountDetailsByTradinngAccount(account);
        const QVariantMap money =
            CBusinessDataBase::GetInstance()->getTradeAccountParam(account, Tessar_Values::Currency::CNY);
        const int sign = details.value(Security::positionFlag).toString() == QLatin1String("Short") ? -1 : 1;
        Account seen;
        seen.isFutures = terminal.accounts().fundAccountOf(account)->property == FuturesFund;
        seen.holdingCost = sign * cents(details, Varnel_Fields::Futures::HoldingCost);
        seen.openCost = sign * cents(details, Varnel_Fields::Futures::OpenCost);
        seen.profitByDate = cents(details, Varnel_Fields::Futures::ClosePosProfitDate);
        seen.profitByTrade = cents(details, Varnel_Fields::Futures::ClosePosProfitTrade);
        const Cents total = cents(details, Varnel_Fields::NormalFundEx::assetBalance);
        const Cents marketValue = sign * cents(details, Varnel_Fields::NormalFundEx::marketValue);
        seen.cash = total - (seen.isFutures ? marketValue - seen.holdingCost : marketValue);
        Cents bound = seen.isFutures ? 0 : marketValue;
        for (const QVariantMap &position : positionsOf(account)) {
            const qint64 blocked = position.value(QStringLiteral("currentQty")).toLongLong() -
                                   position.value(QStringLiteral("tradableQty")).toLongLong();
            seen.held.insert(positionKey(position));
            if (blocked != 0)
                seen.blocked[positionKey(position)] = std::abs(blocked);
            if (seen.isFutures)
                bound += part(std::abs(cents(position, Varnel_Fields::Futures::HoldingCost)), kMargin);
        }
        seen.frozen = total - bound - cents(money, Security::tradeableCash);
        return seen;
    }

    /// Adds the new executions.
    void takeExecutions()
    {
        int total = 0;
        BusinessDataInterface::GetExecutionListByCustomKey({}, total, 0, 1, QStringList());
        if (total == m_executions)
            return;
        const QList<QVariantMap> executions =
            BusinessDataInterface::GetExecutionListByCustomKey({}, total, 0, total - m_executions, QStringList());
        m_executions = total;
        for (const QVariantMap &execution : executions) {
            const Instrument &instrument = instrumentOf(execution);
            const QString account = execution.value(UserAccount::tradingAccount).toString();
            const qint64 qty = execution.value(QStringLiteral("dealQty")).toLongLong();
            const Cents amount = cents(execution, QStringLiteral("dealAmount"));
            const bool buys = isBuying(execution);
            EXPECT_EQ(
                cents(execution.value(QStringLiteral("dealPrice")).toDouble() * double(qty) * instrument.multiplier),
                amount);
            EXPECT_EQ(fee(instrument, buys, amount), cents(execution, QStringLiteral("fee")));
            m_flows[account].netBought += buys ? amount : -amount;
            m_flows[account].fees += fee(instrument, buys, amount);
            const bool isForTomorrow = instrument.kind == SecurityKind::Share || instrument.kind == SecurityKind::Fund;
            if (buys && isForTomorrow)
                m_boughtToday[account][instrument.symbol + QStringLiteral(" Long")] += qty;
        }
    }

    /// The figures that the account must have now, without what its open orders have frozen.
    Account expected(const QString &account, const Account &now) const
    {
        const Account before = m_before[account];
        const Flow flow = m_flows[account];
        Account then;
        // A sale splits what was paid into cost and profit; their sum is known.
        then.holdingCost = before.holdingCost + flow.netBought + now.profitByDate - before.profitByDate;
        then.openCost = before.openCost + flow.netBought + now.profitByTrade - before.profitByTrade;
        then.cash =
            before.cash - flow.fees + (before.isFutures ? now.profitByDate - before.profitByDate : -flow.netBought);
        const QMap<QString, qint64> bought = m_boughtToday[account];
        for (auto qty = bought.begin(); qty != bought.end(); ++qty) {
            if (now.held.contains(qty.key())) // positions without quantity are not listed
                then.blocked.insert(qty.key(), *qty);
        }
        return then;
    }

    void setAside(const QVariantMap &order, Account &account) const
    {
        const Instrument &instrument = instrumentOf(order);
        const qint64 open = order.value(QStringLiteral("leaveQty")).toLongLong();
        if (isClosing(order)) {
            const bool isOfShort = order.value(Security::side).toString() == QLatin1String("BuyClose");
            account.blocked[instrument.symbol + (isOfShort ? QStringLiteral(" Short") : QStringLiteral(" Long"))] +=
                open;
            return;
        }
        const double limit = order.value(Security::price).toDouble();
        const double upperLimit = terminal.exchange().quote(instrument.symbol)->upperLimit;
        const double worst = upperLimit > 0 ? upperLimit : instrument.price * 1.2;
        const Cents amount = cents((limit > 0 ? limit : worst) * double(open) * instrument.multiplier);
        account.frozen += (instrument.kind == SecurityKind::Future ? part(amount, kMargin) : amount) +
                          fee(instrument, isBuying(order), amount);
    }

    void expectItAddsUp()
    {
        takeExecutions();
        QMap<QString, Account> seenNow;
        QMap<QString, Account> expectedNow;
        for (const QString &account : qAsConst(m_accounts)) {
            seenNow[account] = seen(account);
            expectedNow[account] = expected(account, seenNow[account]);
        }
        for (const QVariantMap &order : openOrders())
            setAside(order, expectedNow[order.value(UserAccount::tradingAccount).toString()]);
        for (const QString &account : qAsConst(m_accounts)) {
            const Account &now = seenNow[account];
            const Account &then = expectedNow[account];
            EXPECT_EQ(then.cash, now.cash) << qPrintable(account);
            EXPECT_EQ(then.frozen, now.frozen) << qPrintable(account);
            EXPECT_EQ(then.holdingCost, now.holdingCost) << qPrintable(account);
            EXPECT_EQ(then.openCost, now.openCost) << qPrintable(account);
            EXPECT_EQ(then.blocked, now.blocked) << qPrintable(account);
        }
    }

    VarnelLogic::OrderRequest anyLine(const QString &account, const QDateTime &time)
    {
        const bool isFutures = m_before[account].isFutures;
        const QList<QVariantMap> held = positionsOf(account);
        QString symbol;
        const char *side = isFutures ? (happens(0.5) ? "BuyOpen" : "SellOpen") : "Buy";
        if (happens(0.5) && !held.isEmpty()) {
            const QVariantMap position = oneOf(held);
            symbol = position.value(Security::symbol).toString();
            if (happens(0.7)) {
                const bool isShort = position.value(Security::positionFlag).toString() == QLatin1String("Short");
                side = isFutures ? (isShort ? "BuyClose" : "SellClose") : "Sell";
            }
        } else {
            do
                symbol = oneOf(terminal.exchange().instruments()).symbol;
            while ((terminal.exchange().instrument(symbol)->kind == SecurityKind::Future) != isFutures);
        }
        const Instrument &instrument = *terminal.exchange().instrument(symbol);
        const Quote quote = terminal.exchange().quote(symbol, time).value();
        const double price = instrument.priceOf(instrument.ticksOf(quote.last) + m_chance.whole(-6, 6));
        const qint64 lots = m_chance.whole(1, isFutures ? 3 : happens(0.05) ? 5000 : 15);
        const bool isMarket = happens(0.15);
        return entry::line(symbol, side, instrument.lot == 1 ? instrument.minQty * lots : instrument.lot * lots,
                           isMarket ? QString() : QString::number(price, 'f', instrument.decimals),
                           isMarket ? "Market" : "Limit");
    }

    bool happens(double probability) { return m_chance.from0To1() < probability; }

    template <typename List>
    typename List::value_type oneOf(const List &list)
    {
        return list[int(m_chance.whole(0, list.size() - 1))];
    }

    QStringList m_accounts;
    QMap<QString, Account> m_before;
    QMap<QString, Flow> m_flows;
    QMap<QString, QMap<QString, qint64>> m_boughtToday;
    int m_executions = 0;
    random::Sequence m_chance{quint64(GetParam())};
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Seeds, MoneyAddsUpTest, testing::Range(1, 4));

TEST_P(MoneyAddsUpTest, ThroughThousandsOfOrdersAndCancels)
{
    QDateTime time = terminal.now();
    int placed = 0;
    int refused = 0;
    int cancelled = 0;
    const int executionsBefore = m_executions;
    expectItAddsUp();
    while (placed < 2000 && !HasFailure()) {
        const QString account = oneOf(m_accounts);
        QList<VarnelLogic::OrderRequest> lines;
        for (qint64 i = m_chance.whole(1, 40); i > 0; --i)
            lines.append(anyLine(account, time));
        const entry::Outcome outcome = entry::place(account, lines);
        ASSERT_EQ(0, outcome.result) << qPrintable(outcome.errors.join(QLatin1Char(' ')));
        placed += outcome.responses.size();
        for (int i = 0; i < outcome.responses.size(); ++i)
            refused += outcome.status(i) == QLatin1String("0") ? 0 : 1;
        expectItAddsUp();

        QStringList ids;
        for (const QVariantMap &order : openOrders()) {
            if (happens(0.15))
                ids.append(order.value(Security::orderID).toString());
        }
        cancelled += ids.size();
        entry::cancel(ids);
        expectItAddsUp();

        time = time.addSecs(m_chance.whole(1, 60));
        terminal.playMarket(time);
        expectItAddsUp();
    }
    EXPECT_GT(m_executions - executionsBefore, 500);
    EXPECT_GT(refused, 20);
    EXPECT_GT(cancelled, 200);

    QStringList rest;
    for (const QVariantMap &order : openOrders())
        rest.append(order.value(Security::orderID).toString());
    EXPECT_FALSE(rest.isEmpty());
    entry::cancel(rest);
    expectItAddsUp();
    terminal.playMarket(time.addMSecs(500)); // when no quote changes any more
    expectItAddsUp();
    for (const QString &account : qAsConst(m_accounts)) {
        const Account now = seen(account);
        EXPECT_EQ(0, now.frozen) << qPrintable(account);
        for (auto blocked = now.blocked.begin(); blocked != now.blocked.end(); ++blocked)
            EXPECT_EQ(m_boughtToday[account][blocked.key()], *blocked) << qPrintable(blocked.key());
    }
}
