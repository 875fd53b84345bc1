#include "bridge/HandlerTable.h"

#include "LogRecorder.h"

#include <QObject>
#include <QStringList>
#include <gtest/gtest.h>

namespace {

/// Methods that could be mistaken for handlers.
class MixedDispatcher : public QObject {
    Q_OBJECT
public:
    QStringList calls;

    Q_INVOKABLE void one(const QVariantList &args) { calls << args.value(0).toString(); }
    Q_INVOKABLE void none() { calls << QStringLiteral("none"); }
    Q_INVOKABLE void listAndNumber(const QVariantList &, int) { calls << QStringLiteral("listAndNumber"); }
    Q_INVOKABLE void numberAndList(int, const QVariantList &) { calls << QStringLiteral("numberAndList"); }
    Q_INVOKABLE void text(const QString &) { calls << QStringLiteral("text"); }
};

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

#include "HandlerKindsTest.moc"
