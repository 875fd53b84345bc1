#include "common/JsonWriter.h"

#include "JsonReference.h"
#include "VariantParts.h"
#include "VariantTree.h"

#include <cmath>
#include <cstdio>
#include <gtest/gtest.h>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<uchar>;

/// Mostly small, so that a run tries many trees.
Bytes randomBytes(std::mt19937_64 &random)
{
    Bytes bytes(random() % (random() % 16 == 0 ? 1500 : 120));
    for (uchar &byte : bytes)
        byte = uchar(random());
    return bytes;
}

QByteArray differenceFor(const Bytes &bytes)
{
    const QVariant tree = variantTree(bytes.data(), bytes.size());
    return difference(qtJson(tree), compactJson(tree));
}

/// The shortest prefix of these bytes that still shows a difference: a smaller tree is easier to understand.
Bytes shortened(const Bytes &bytes)
{
    Bytes shorter;
    for (const uchar byte : bytes) {
        if (!differenceFor(shorter).isEmpty())
            break;
        shorter.push_back(byte);
    }
    return shorter;
}

quint64 numberFrom(const char *variable, quint64 otherwise)
{
    if (!qEnvironmentVariableIsSet(variable))
        return otherwise;
    bool isNumber = false;
    const quint64 number = qEnvironmentVariable(variable).toULongLong(&isNumber);
    EXPECT_TRUE(isNumber) << variable << " is no number";
    return number;
}

/// Seed and count from the environment, printed before the test can fail.
struct Wanted {
    quint64 seed = numberFrom("VARNEL_JSON_SEED", std::random_device{}());
    quint64 trees = numberFrom("VARNEL_JSON_TREES", 100'000);

    Wanted()
    {
        std::printf("VARNEL_JSON_SEED=%llu VARNEL_JSON_TREES=%llu\n", seed, trees);
        std::fflush(stdout);
        testing::Test::RecordProperty("VARNEL_JSON_SEED", std::to_string(seed));
        testing::Test::RecordProperty("VARNEL_JSON_TREES", std::to_string(trees));
        EXPECT_GT(trees, 0U);
    }
};

TEST(JsonWriterProperty, WritesAnyTreeAsQtDoes)
{
    const Wanted wanted;
    std::mt19937_64 random(wanted.seed);
    for (quint64 tree = 0; tree < wanted.trees; ++tree) {
        const Bytes bytes = randomBytes(random);
        const QByteArray found = differenceFor(bytes);
        if (found.isEmpty())
            continue;
        const Bytes few = shortened(bytes);
        const auto hex = QByteArray::fromRawData(reinterpret_cast<const char *>(few.data()), int(few.size())).toHex();
        FAIL() << "seed " << wanted.seed << ", tree " << tree << ": " << found.constData() << "from the bytes "
               << hex.constData() << ": " << differenceFor(few).constData();
    }
}

// Doubles are the hardest to write, so this tries more of them than the trees hold.
TEST(JsonWriterProperty, WritesAnyDoubleAsQtDoes)
{
    constexpr int doublesInAList = 100;
    const Wanted wanted;
    std::mt19937_64 random(wanted.seed);
    for (quint64 list = 0; list < wanted.trees / 20 + 1; ++list) {
        QVariantList doubles;
        for (int index = 0; index < doublesInAList; ++index) {
            const quint64 words[] = {random(), random(), random()};
            Decisions decisions(reinterpret_cast<const uchar *>(words), sizeof words);
            doubles.append(anyDouble(decisions));
        }
        const QByteArray found = difference(qtJson(doubles), compactJson(doubles));
        ASSERT_TRUE(found.isEmpty()) << "seed " << wanted.seed << ", list " << list << ": " << found.constData();
    }
}

/// Counts what the random trees contain.
struct Reach {
    std::set<int> types;
    bool doubledMapKey = false;
    bool doubledHashKey = false;
    bool loneSurrogateInKey = false;
    bool notANumber = false;
    bool negativeZero = false;
    bool undefined = false;
    bool longText = false;
    int depth = 0;

    void visit(const QVariant &value, int level)
    {
        types.insert(value.userType());
        depth = qMax(depth, level);
        if (value.userType() == QMetaType::QVariantList) {
            const QVariantList list = value.toList();
            for (const QVariant &item : list)
                visit(item, level + 1);
        } else if (value.userType() == QMetaType::QVariantMap) {
            visitEntries(value.toMap(), doubledMapKey, level);
        } else if (value.userType() == QMetaType::QVariantHash) {
            visitEntries(value.toHash(), doubledHashKey, level);
        } else if (value.userType() == QMetaType::Double) {
            notANumber |= std::isnan(value.toDouble());
            negativeZero |= value.toDouble() == 0 && std::signbit(value.toDouble());
        } else if (value.userType() == QMetaType::QJsonValue) {
            undefined |= value.toJsonValue().isUndefined();
        } else if (value.userType() == QMetaType::QString) {
            longText |= value.toString().size() > 2048;
        }
    }

    template <class Entries>
    void visitEntries(const Entries &entries, bool &doubled, int level)
    {
        for (auto it = entries.cbegin(); it != entries.cend(); ++it) {
            doubled |= entries.count(it.key()) > 1;
            loneSurrogateInKey |= QString::fromUtf8(it.key().toUtf8()) != it.key();
            visit(it.value(), level + 1);
        }
    }
};

// A property test proves nothing about values that its trees never contain.
TEST(VariantTree, HasEveryTypeAndEveryAwkwardThingInIt)
{
    std::mt19937_64 random(1);
    Reach inside;
    std::set<int> topTypes;
    for (int tree = 0; tree < 20'000; ++tree) {
        const Bytes bytes = randomBytes(random);
        const QVariant value = variantTree(bytes.data(), bytes.size());
        topTypes.insert(value.userType());
        inside.visit(value, 0);
    }

    for (int type = QMetaType::FirstCoreType; type <= QMetaType::LastCoreType; ++type) {
        if (type == QMetaType::Void)
            continue;
        EXPECT_EQ(inside.types.count(type), 1U) << QMetaType::typeName(type);
    }
    for (const char *type : {"Mute", "Speaking", "Unnamed", "QLocale::Language", "QList<QVariantMap>", "TextOfTexts"})
        EXPECT_EQ(inside.types.count(QMetaType::type(type)), 1U) << type;
    EXPECT_GT(topTypes.size(), 30U);
    EXPECT_TRUE(inside.doubledMapKey);
    EXPECT_TRUE(inside.doubledHashKey);
    EXPECT_TRUE(inside.loneSurrogateInKey);
    EXPECT_TRUE(inside.notANumber);
    EXPECT_TRUE(inside.negativeZero);
    EXPECT_TRUE(inside.undefined);
    EXPECT_TRUE(inside.longText);
    EXPECT_GT(inside.depth, 200);
}

// The same bytes must give the same tree; otherwise seeds and saved inputs would be useless.
TEST(VariantTree, IsTheSameForTheSameBytes)
{
    std::mt19937_64 random(2);
    for (int tree = 0; tree < 1000; ++tree) {
        const Bytes bytes = randomBytes(random);
        ASSERT_EQ(qtJson(variantTree(bytes.data(), bytes.size())), qtJson(variantTree(bytes.data(), bytes.size())));
    }
}

} // namespace
