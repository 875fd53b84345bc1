#include "DispatcherTest.h"
#include "Replies.h"

#include "bridge/TradeThread.h"

#include <memory>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// Names that run the handler although they are not its name. That is how Qt looks up a method by name, and pages may
/// have come to rely on it.
QStringList namesThatMatch(const QString &handler)
{
    return {u" "_qs + handler,           handler + u" "_qs,
            u"   "_qs + handler,         handler + u"   "_qs,
            u" "_qs + handler + u" "_qs, u"\t"_qs + handler,
            handler + u"\0tail"_qs,      u"\t "_qs + handler + u" \0Data_unknown_REQ"_qs};
}

QStringList namesThatDoNotMatch(const QString &handler)
{
    const QString first = handler.left(4);
    const QString rest = handler.mid(4);
    return {first + u"\t"_qs + rest,
            first + u" "_qs + rest,
            first + u"\0"_qs + rest,
            u"\0"_qs + handler,
            handler + u"\n"_qs,
            u"\n"_qs + handler,
            u"\r"_qs + handler,
            u"\u00a0"_qs + handler,
            u"\ufeff"_qs + handler,
            handler + u"()"_qs,
            handler + u"(QVariantList)"_qs,
            handler + u"("_qs,
            u"1"_qs + handler,
            handler + u"_"_qs,
            handler.toLower(),
            handler.toUpper(),
            handler.chopped(1),
            u"deleteLater"_qs,
            u"destroyed"_qs,
            u"objectNameChanged"_qs,
            u" deleteLater"_qs,
            u" "_qs,
            u"\0"_qs};
}

class DataMethodNamesTest : public DispatcherTest {};

TEST_F(DataMethodNamesTest, BlanksAroundANameAndWhatFollowsANullAreIgnored)
{
    for (const QString &name : namesThatMatch(u"Data_getToken_REQ"_qs)) {
        view.clear();
        EXPECT_TRUE(dispatcher->onInvokeMethod(1, 2, name, {})) << testing::PrintToString(name);
        EXPECT_THAT(received(), ElementsAre(u"Data_getToken_RES"_qs, QString())) << testing::PrintToString(name);
    }
}

TEST_F(DataMethodNamesTest, NoOtherNameThatLooksLikeOneIsKnown)
{
    for (const QString &name : namesThatDoNotMatch(u"Data_getToken_REQ"_qs))
        EXPECT_FALSE(dispatcher->onInvokeMethod(1, 2, name, {u"u1"_qs})) << testing::PrintToString(name);
    EXPECT_THAT(view.eventsAfterDraining(), IsEmpty());
    EXPECT_TRUE(dispatcher->onInvokeMethod(1, 2, u"Data_getToken_REQ"_qs, {})); // it is still there
}

TEST_F(DataMethodNamesTest, TheSameHoldsForADispatcherOnAnotherThread)
{
    EXPECT_CALL(host, VarnelUtils_GetCurrentShowType()).WillOnce(testing::Return(GroupedShowType));
    auto remote = std::make_unique<DataThread>(nullptr);
    remote->setView(&view);
    const QStringList names = namesThatMatch(u"Data_getToken_REQ"_qs);
    for (const QString &name : names)
        EXPECT_TRUE(remote->onInvokeMethod(1, 2, name, {})) << testing::PrintToString(name);
    for (const QString &name : namesThatDoNotMatch(u"Data_getToken_REQ"_qs))
        EXPECT_FALSE(remote->onInvokeMethod(1, 2, name, {})) << testing::PrintToString(name);
    EXPECT_TRUE(view.waitForEvents(names.size()));
    remote.reset(); // ends its thread: nothing more can come
    EXPECT_EQ(view.eventsAfterDraining().size(), names.size());
}

class TradeMethodNamesTest : public HostTest {
protected:
    RecordingView view;
    TradeThread *dispatcher = new TradeThread(&view); // goes with the view
};

TEST_F(TradeMethodNamesTest, BlanksAroundANameAndWhatFollowsANullAreIgnored)
{
    for (const QString &name : namesThatMatch(u"Trade_insertOrder_REQ"_qs)) {
        view.clear();
        EXPECT_TRUE(dispatcher->onInvokeMethod(1, 2, name, {})) << testing::PrintToString(name);
        EXPECT_THAT(receivedBy(view), ElementsAre(u"Trade_insertOrder_RES"_qs, QString()))
            << testing::PrintToString(name);
    }
}

TEST_F(TradeMethodNamesTest, NoOtherNameThatLooksLikeOneIsKnown)
{
    const QVariantList order{u"u1"_qs, u"f"_qs, u"S"_qs, u"X"_qs, u"b"_qs, u"l"_qs, u"1"_qs, u"1"_qs, u"tag"_qs};
    for (const QString &name : namesThatDoNotMatch(u"Trade_insertOrder_REQ"_qs))
        EXPECT_FALSE(dispatcher->onInvokeMethod(1, 2, name, order)) << testing::PrintToString(name);
    EXPECT_THAT(view.eventsAfterDraining(), IsEmpty());
    EXPECT_TRUE(dispatcher->onInvokeMethod(1, 2, u"Trade_insertOrder_REQ"_qs, {})); // it is still there
}

} // namespace
