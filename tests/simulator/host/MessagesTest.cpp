#include "CEventMessageCommon.h"
#include "CMessageCommon.h"
#include "CPackMessageCommon.h"
#include "CUnPackMessageCommon.h"
#include "Tessar_Fields.h"

#include <gtest/gtest.h>

namespace {

const QString kKey = QStringLiteral("key");

QString idOf(const CPackMessageCommon &pack)
{
    return pack.GetValue(Tessar_Fields::System::clientMsgID).toString();
}

} // namespace

TEST(Messages, EveryPackerHasAUniqueId)
{
    CPackMessageCommon one;
    CPackMessageCommon two;
    EXPECT_FALSE(idOf(one).isEmpty());
    EXPECT_NE(idOf(one), idOf(two));
}

TEST(Messages, PackedFieldsAreUnpacked)
{
    CPackMessageCommon pack;
    pack.AddVaule(kKey, 10);
    pack.AddVaule(QStringLiteral("list"), QVariantList{1, QStringLiteral("two")});
    CUnPackMessageCommon unpack;
    EXPECT_TRUE(unpack.SetUnPackMsg(pack.GetPackedMsg(0), false));
    const QVariantMap row = unpack.GetRowValue();
    EXPECT_EQ(3, row.size());
    EXPECT_EQ(QVariant(10), row.value(kKey));
    EXPECT_EQ(QVariant(QVariantList({1, QStringLiteral("two")})), row.value(QStringLiteral("list")));
    EXPECT_EQ(idOf(pack), row.value(Tessar_Fields::System::clientMsgID).toString());
}

TEST(Messages, TheLastValueOfAKeyCounts)
{
    CPackMessageCommon pack;
    pack.AddVaule(kKey, 1);
    pack.AddVaule(kKey, 2);
    EXPECT_EQ(QVariant(2), pack.GetValue(kKey));
    CUnPackMessageCommon unpack;
    unpack.SetUnPackMsg(pack.GetPackedMsg(0), false);
    EXPECT_EQ(QVariant(2), unpack.GetRowValue().value(kKey));
    EXPECT_FALSE(pack.GetValue(QStringLiteral("other")).isValid());
}

TEST(Messages, AnInvalidMessageUnpacksToNothing)
{
    for (const QVariant &body : {QVariant(), QVariant(5), QVariant(QVariantList()), QVariant(QVariantList{7}),
                                 QVariant(QVariantList{QVariant(QVariantList{QVariant(QVariantList{kKey})})})}) {
        CUnPackMessageCommon unpack;
        unpack.SetUnPackMsg(body, false);
        EXPECT_TRUE(unpack.GetRowValue().isEmpty());
    }
}

TEST(Messages, RequestsAndEventsKeepTheirValues)
{
    CMessageCommon request;
    request.SetType(QStringLiteral("t"));
    request.SetMsg(1);
    request.SetSrcid(2);
    EXPECT_EQ(QVariant(QStringLiteral("t")), request.Type());
    EXPECT_EQ(QVariant(1), request.Msg());
    EXPECT_EQ(2, request.Srcid());

    CEventMessageCommon event;
    event.SetType(3);
    event.SetMsg(4);
    event.SetSrcid(5);
    EXPECT_EQ(QVariant(3), event.Type());
    EXPECT_EQ(QVariant(4), event.Msg());
    EXPECT_EQ(5, event.Srcid());
}
