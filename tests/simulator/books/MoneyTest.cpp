#include "books/Money.h"

#include <gtest/gtest.h>

using namespace sim;

TEST(Money, SumsOfCentsAreExact)
{
    const Money cent = Money::rounded(0.01);
    Money sum = Money::rounded(1e10);
    for (int i = 0; i < 1000000; ++i)
        sum += cent;
    EXPECT_EQ(Money::rounded(1e10 + 1e4), sum);
    for (int i = 0; i < 1000000; ++i)
        sum -= cent;
    EXPECT_EQ(1e10, sum.yuan());
}

TEST(Money, IsRoundedToTheNearestCent)
{
    EXPECT_EQ(18.36, Money::rounded(18.3649).yuan());
    EXPECT_EQ(-18.37, Money::rounded(-18.3651).yuan());
    EXPECT_EQ(Money::rounded(33.33), Money::rounded(100).part(1.0 / 3));
    EXPECT_LT(-Money::rounded(0.01), Money());
}

TEST(Money, HugeAmountsAreClampedAndDoNotOverflow)
{
    for (const double yuan : {9.2233e16, 1e20, 1e300}) {
        const Money much = Money::rounded(yuan);
        EXPECT_LT(Money::rounded(1e15), much + much.part(0.5)) << yuan;
        EXPECT_LT(-much - much.part(0.5), Money::rounded(-1e15)) << yuan;
    }
}
