#include "gateway/MessageCenterCalls.h"

#include <gtest/gtest.h>

using sim::MessageCenterCalls::symbolsIn;

namespace {

const QString kOne = QStringLiteral("609801.SH");
const QString kOther = QStringLiteral("YL2503.CF");

} // namespace

TEST(SymbolsOfASubscription, MayBeATextWithCommas)
{
    EXPECT_EQ(QStringList({kOne, kOther}), symbolsIn(kOne + QLatin1Char(',') + kOther));
    EXPECT_EQ(QStringList(kOne), symbolsIn(kOne));
    EXPECT_EQ(QStringList({kOne, kOther}), symbolsIn(QStringLiteral(",609801.SH,,YL2503.CF,")));
    EXPECT_EQ(QStringList(QStringLiteral(" 609801.sh ")), symbolsIn(QStringLiteral(" 609801.sh ")))
        << "symbols are not changed";
}

TEST(SymbolsOfASubscription, MayBeAnArray)
{
    EXPECT_EQ(QStringList({kOne, kOther}), symbolsIn(QVariantList{kOne, kOther}));
    EXPECT_EQ(QStringList({kOne, QStringLiteral("7")}), symbolsIn(QVariantList{kOne, QString(), 7, QVariant()}));
}

TEST(SymbolsOfASubscription, MayBeATextThatHoldsAnArray)
{
    EXPECT_EQ(QStringList({kOne, kOther}), symbolsIn(QStringLiteral("[\"609801.SH\", \"YL2503.CF\"]")));
    EXPECT_EQ(QStringList({QStringLiteral("a,b")}), symbolsIn(QStringLiteral("[\"a,b\"]")));
    EXPECT_EQ(QStringList({QStringLiteral("[x"), QStringLiteral("y]")}), symbolsIn(QStringLiteral("[x,y]")))
        << "a text that is not JSON is split at its commas";
}

TEST(SymbolsOfASubscription, MayBeEmpty)
{
    for (const QVariant &none : {QVariant(), QVariant(QString()), QVariant(QVariantList()),
                                 QVariant(QStringLiteral("[]")), QVariant(QVariantMap())})
        EXPECT_EQ(QStringList(), symbolsIn(none));
}
