#include "bridge/HandlerTable.h"

#include "LogRecorder.h"
#include "MixedDispatcher.h"

#include <gtest/gtest.h>

namespace {

TEST(HandlerKindsTest, OnlyAMethodWithOneListOfValuesIsAHandler)
{
    const HandlerTable table(MixedDispatcher::staticMetaObject);
    const QVariantList args{QStringLiteral("a")};
    LogRecorder log; // Qt says which methods there are
    MixedDispatcher dispatcher;
    for (const char *name : {"none", "listAndNumber", "numberAndList", "text"})
        EXPECT_FALSE(table.invoke(&dispatcher, QString::fromLatin1(name), args)) << name;
    EXPECT_TRUE(dispatcher.calls.isEmpty());
    EXPECT_TRUE(table.invoke(&dispatcher, QStringLiteral("one"), args));
    EXPECT_EQ(dispatcher.calls, QStringList{QStringLiteral("a")});
}

} // namespace
