#include "books/Books.h"

#include <gtest/gtest.h>

#include <QSet>

#include <thread>

using namespace sim;

namespace {

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

class BooksTest : public testing::Test {
protected:
    QStringList accounts(int property) const
    {
        QStringList list;
        for (const FundAccount &fund : all.fundAccounts(property))
            list.append(fund.account);
        return list;
    }

    const Accounts all{{{text("T1"), text("甲")}},
                       {{text("S2"), text("二"), StockFund, {text("B"), text("A")}},
                        {text("F1"), text("期"), FuturesFund, {text("C")}},
                        {text("S1"), text("一"), StockFund, {text("D")}}}};
    Books books{all, text("20250303")};
};

} // namespace

TEST_F(BooksTest, FundAccountsOfAPropertyKeepTheirOrder)
{
    EXPECT_EQ(QStringList({text("S2"), text("S1")}), accounts(StockFund));
    EXPECT_EQ(QStringList({text("F1")}), accounts(FuturesFund));
    EXPECT_EQ(QStringList({text("S2"), text("F1"), text("S1")}), accounts(AllFunds));
    EXPECT_EQ(QStringList(), accounts(3));
    EXPECT_EQ(QStringList(), accounts(-1));
}

TEST_F(BooksTest, AccountsAreFoundByTheirNumbers)
{
    ASSERT_TRUE(all.fundAccount(text("S2")));
    EXPECT_EQ(QStringList({text("B"), text("A")}), all.fundAccount(text("S2"))->tradingAccounts);
    ASSERT_TRUE(all.fundAccountOf(text("A")));
    EXPECT_EQ(text("S2"), all.fundAccountOf(text("A"))->account);
    EXPECT_EQ(text("F1"), all.fundAccountOf(text("C"))->account);
}

TEST_F(BooksTest, UnknownAccountsAreNotFound)
{
    EXPECT_FALSE(all.fundAccount(text("A"))); // a trading account
    EXPECT_FALSE(all.fundAccount(QString()));
    EXPECT_FALSE(all.fundAccountOf(text("S2"))); // a fund account
}

TEST_F(BooksTest, ClientOrderIdsAreUnique)
{
    EXPECT_EQ(text("2025030300000001"), books.nextClientOrderId());

    constexpr int kEach = 2000;
    QStringList mine;
    QStringList theirs;
    std::thread other([&] {
        for (int i = 0; i < kEach; ++i)
            theirs.append(books.nextClientOrderId());
    });
    for (int i = 0; i < kEach; ++i)
        mine.append(books.nextClientOrderId());
    other.join();
    const QStringList all = mine + theirs;
    EXPECT_EQ(2 * kEach, QSet<QString>(all.begin(), all.end()).size());
}
