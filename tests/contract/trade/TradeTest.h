#pragma once

#include "trade/TradeProcess.h"

#include "HostAnswers.h"
#include "HostTest.h"
#include "LogRecorder.h"
#include "LogText.h"
#include "Replies.h"

#include <QStringList>

namespace VarnelLogic {

inline bool operator==(const OrderRequest &a, const OrderRequest &b)
{
    return a.symbol == b.symbol && a.orderQty == b.orderQty && a.priceType == b.priceType && a.price == b.price &&
           a.side == b.side && a.exchange == b.exchange && a.clOrdID == b.clOrdID && a.orderTag == b.orderTag;
}

inline void PrintTo(const OrderRequest &order, std::ostream *os)
{
    *os << testing::PrintToString(QStringList{order.symbol, QString::number(order.orderQty), order.priceType,
                                              order.price, order.side, order.exchange, order.clOrdID, order.orderTag});
}

} // namespace VarnelLogic

/// Base of the tests of the trade service, which calls no host operation when it starts.
class TradeTest : public HostTest {
protected:
    using Orders = QList<VarnelLogic::OrderRequest>;
    using Errors = QList<VarnelLogic::ResponseInfo>;
    using Records = QList<QVariantMap>;

    /// A fund account "f1" with two trading accounts; the library uses the first.
    void expectKnownAccount()
    {
        expectAccounts(host, u"f1"_qs, {{u"f1"_qs, u"name"_qs, u"t1"_qs}, {u"f1"_qs, u"other"_qs, u"t2"_qs}});
    }

    /// Client order identifiers, counted from "c1" again.
    void expectClientOrderIds(int count)
    {
        m_lastClientOrder = 0;
        EXPECT_CALL(host, CBusinessDataBase_getClientOrderID()).Times(count).WillRepeatedly([this] {
            return u"c%1"_qs.arg(++m_lastClientOrder);
        });
    }

    /// Expects one request with exactly these orders for the account "t1", and answers it with result, errors and
    /// response.
    void expectOrders(const Orders &orders, int result, const Errors &errors = {},
                      const QVariant &response = u"the response"_qs)
    {
        EXPECT_CALL(host, VarnelTradeLogic_orders(testing::_, testing::_, 319, testing::_, true))
            .WillOnce([=](const OrderRequestList &list, QVariant &responseOut, int, Errors &errorsOut, bool) {
                EXPECT_EQ(list.Account(), u"t1"_qs);
                EXPECT_EQ(list.Tag(), u"tag"_qs);
                EXPECT_EQ(list.Orders(), orders);
                EXPECT_FALSE(responseOut.isValid());
                EXPECT_TRUE(errorsOut.isEmpty());
                responseOut = response;
                errorsOut = errors;
                return result;
            });
    }

    /// Expects the response to the same orders to be translated, and gives these records for it.
    void expectResponse(const Orders &orders, const Records &records)
    {
        EXPECT_CALL(host, VarnelTradeLogic_transOrderRsp(testing::_, Identical(QVariant(u"the response"_qs))))
            .WillOnce([=](const OrderRequestList &list, const QVariant &) {
                EXPECT_EQ(list.Account(), u"t1"_qs);
                EXPECT_EQ(list.Orders(), orders);
                return records;
            });
    }

    /// The logged messages. Fails the test for one that is not at debug level and of the library's category.
    QStringList logged() const
    {
        QStringList messages;
        const QList<LogLine> lines = log.lines();
        for (const LogLine &line : lines) {
            EXPECT_EQ(line.type, QtDebugMsg) << qPrintable(line.message);
            EXPECT_EQ(line.category, u"varnel.websdk"_qs) << qPrintable(line.message);
            EXPECT_FALSE(line.file.isEmpty() || line.function.isEmpty()) << qPrintable(line.message);
            messages << line.message;
        }
        return messages;
    }

    const testing::InSequence m_order; ///< of all host calls
    LogRecorder log;
    TradeProcess *process = TradeProcess::instance();

private:
    int m_lastClientOrder = 0;
};
