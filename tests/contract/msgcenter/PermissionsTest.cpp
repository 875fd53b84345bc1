#include "msgcenter/WebMsgCenter.h"

#include "HostTest.h"
#include "LogRecorder.h"
#include "Replies.h"
#include "ThreadLatch.h"

#include "Algo_Fields.h"
#include "Algo_Values.h"
#include "Varnel_Fields.h"

#include <thread>

using testing::_;
using testing::Return;

namespace {

const QString loaded = u"SnbBindInit"_qs;
const QString hostsOwn = Algo_Values::SupprotType::KFZ_SNB;
const QString alias = u"KFZ;SNB"_qs;

QVariantMap permission(const QVariant &fundAccount, const QVariant &supportType)
{
    return {{Varnel_Fields::FastFocus::fundAccount, fundAccount},
            {Algo_Fields::VarnelStrategy::supportType, supportType}};
}

class PermissionsTest : public HostTest {
protected:
    PermissionsTest() { start.dataDispatchers = 0; }

    /// Starts the library; the member start says how the load goes.
    void startLibrary()
    {
        expectStart(start);
        center = WebMsgCenter::instance();
    }

    void startWith(const QList<QVariantMap> &permissions)
    {
        start.permissions = permissions;
        startLibrary();
    }

    void expectIsInited(bool answer)
    {
        EXPECT_CALL(host, VarnelInitStateMgr_IsInited(loaded)).WillOnce(Return(answer)).RetiresOnSaturation();
    }

    /// Asks while the host says that the permissions are loaded.
    bool held(const QString &fundAccount, const QString &supportType)
    {
        expectIsInited(true);
        return center->getPermission(fundAccount, supportType);
    }

    /// Asks while the host says that they are not loaded. Expects the load first, as the member start describes it.
    bool heldAfterLoad(const QString &fundAccount, const QString &supportType)
    {
        const testing::Sequence order;
        EXPECT_CALL(host, VarnelInitStateMgr_IsInited(loaded))
            .InSequence(order)
            .WillOnce(Return(false))
            .RetiresOnSaturation();
        expectPermissionLoad(start, order);
        return center->getPermission(fundAccount, supportType);
    }

    HostStart start;
    WebMsgCenter *center = nullptr;
    LogRecorder log;
};

TEST_F(PermissionsTest, AreLoadedAtStartAndAnsweredFromThere)
{
    startWith({permission(u"f1"_qs, hostsOwn), permission(u"f2"_qs, hostsOwn), permission(u"f1"_qs, u"other"_qs)});
    EXPECT_TRUE(held(u"f1"_qs, alias));
    EXPECT_TRUE(held(u"f2"_qs, alias));
    EXPECT_TRUE(held(u"f1"_qs, u"other"_qs));
    EXPECT_FALSE(held(u"f2"_qs, u"other"_qs));
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(PermissionsTest, HostsOwnNameOfTheAliasedSupportTypeIsUnknown)
{
    startWith({permission(u"f1"_qs, hostsOwn), permission(u"f2"_qs, hostsOwn + u' ')});
    EXPECT_FALSE(held(u"f1"_qs, hostsOwn));
    EXPECT_TRUE(held(u"f2"_qs, hostsOwn + u' ')); // filed as it came
    EXPECT_FALSE(held(u"f2"_qs, alias));
}

TEST_F(PermissionsTest, AliasThatTheServerSendsItselfIsTheSameSupportType)
{
    startWith({permission(u"f1"_qs, alias), permission(u"f2"_qs, hostsOwn)});
    EXPECT_TRUE(held(u"f1"_qs, alias));
    EXPECT_TRUE(held(u"f2"_qs, alias));
}

TEST_F(PermissionsTest, AccountsAndTypesThatTheServerDidNotNameAreRefused)
{
    startWith({permission(u"f1"_qs, hostsOwn)});
    for (const QString &supportType : {u"KFZ"_qs, u"SNB"_qs, u"kfz;snb"_qs, u"KFZ;SNB "_qs, QString()})
        EXPECT_FALSE(held(u"f1"_qs, supportType)) << qPrintable(supportType);
    for (const QString &fundAccount : {u"F1"_qs, u"f"_qs, u"f1 "_qs, QString(), QString(1 << 20, u'x')})
        EXPECT_FALSE(held(fundAccount, alias)) << fundAccount.size();
}

TEST_F(PermissionsTest, RecordsThatLackAFieldAreFiledUnderTheEmptyText)
{
    startWith({{{Varnel_Fields::FastFocus::fundAccount, u"f1"_qs}},
               {{Algo_Fields::VarnelStrategy::supportType, u"other"_qs}},
               permission(u"f2"_qs, QVariant()),
               permission(QVariantMap(), QVariantList()),
               permission(7, 8)});
    EXPECT_TRUE(held(u"f1"_qs, QString()));
    EXPECT_TRUE(held(QString(), u"other"_qs));
    EXPECT_TRUE(held(u"f2"_qs, QString()));
    EXPECT_TRUE(held(QString(), QString()));
    EXPECT_TRUE(held(u"7"_qs, u"8"_qs));
    EXPECT_FALSE(held(u"f1"_qs, u"other"_qs));
}

TEST_F(PermissionsTest, LoadThatFailsIsTriedAgainOnEachLookUpUntilItSucceeds)
{
    start.permissionError = u"服务器忙"_qs;
    startWith({permission(u"f1"_qs, hostsOwn)}); // nobody trusts these
    EXPECT_FALSE(heldAfterLoad(u"f1"_qs, alias));
    EXPECT_FALSE(held(u"f1"_qs, alias));

    start.permissionError.clear();
    start.permissions = {permission(u"f2"_qs, hostsOwn)};
    EXPECT_TRUE(heldAfterLoad(u"f2"_qs, alias));
    EXPECT_TRUE(held(u"f2"_qs, alias));
    EXPECT_FALSE(held(u"f1"_qs, alias));
}

TEST_F(PermissionsTest, FailedLoadKeepsTheEarlierPermissions)
{
    startWith({permission(u"f1"_qs, hostsOwn)});
    start.permissionError = u"x"_qs;
    start.permissions.clear();
    EXPECT_TRUE(heldAfterLoad(u"f1"_qs, alias));
}

TEST_F(PermissionsTest, WithoutALoginTheServerIsNotAsked)
{
    start.loginAccount.clear();
    startLibrary();
    EXPECT_FALSE(heldAfterLoad(u"f1"_qs, alias));

    start.loginAccount = u"somebody"_qs; // meanwhile
    start.permissions = {permission(u"f1"_qs, hostsOwn)};
    EXPECT_TRUE(heldAfterLoad(u"f1"_qs, alias));
}

TEST_F(PermissionsTest, NothingIsLoadedWhenTheHostRefusesTheLoad)
{
    start.permissionLoadIsFree = false;
    startLibrary();
    EXPECT_FALSE(heldAfterLoad(u"f1"_qs, alias));

    start.permissionLoadIsFree = true;
    start.permissions = {permission(u"f1"_qs, hostsOwn)};
    EXPECT_TRUE(heldAfterLoad(u"f1"_qs, alias));
    start.permissionLoadIsFree = false;
    EXPECT_TRUE(heldAfterLoad(u"f1"_qs, alias)); // from what is there
}

TEST_F(PermissionsTest, SecondLoadAddsToTheFirst)
{
    startWith({permission(u"f1"_qs, hostsOwn), permission(u"f1"_qs, hostsOwn)});
    start.permissions = {permission(u"f1"_qs, hostsOwn), permission(u"f2"_qs, hostsOwn)};
    EXPECT_TRUE(heldAfterLoad(u"f2"_qs, alias)); // the host has reset its state
    EXPECT_TRUE(held(u"f1"_qs, alias));
    EXPECT_FALSE(held(u"f3"_qs, alias));
}

TEST_F(PermissionsTest, LookUpsDoNotWaitForARunningLoad)
{
    startWith({permission(u"f1"_qs, hostsOwn)});
    ThreadLatch queryBegan;
    ThreadLatch queryMayEnd;

    const testing::Sequence order;
    EXPECT_CALL(host, VarnelInitStateMgr_IsInited(loaded)).InSequence(order).WillOnce(Return(false));
    EXPECT_CALL(host, VarnelInitStateMgr_StartInit(loaded)).InSequence(order).WillOnce(Return(true));
    EXPECT_CALL(host, CBusinessDataBase_GetLoginAccount()).InSequence(order).WillOnce(Return(start.loginAccount));
    EXPECT_CALL(host, VarnelUtils_QueryDatasFromServer(center, _, _, BlockingQueryDataMode, _))
        .InSequence(order)
        .WillOnce([&] {
            queryBegan.open();
            queryMayEnd.wait();
            return QList<QVariantMap>{permission(u"f2"_qs, hostsOwn)};
        });
    // This thread asks meanwhile: once while the host says loaded, once while it says not loaded but refuses the load.
    EXPECT_CALL(host, VarnelInitStateMgr_IsInited(loaded)).InSequence(order).WillOnce(Return(true));
    EXPECT_CALL(host, VarnelInitStateMgr_IsInited(loaded)).InSequence(order).WillOnce(Return(false));
    EXPECT_CALL(host, VarnelInitStateMgr_StartInit(loaded)).InSequence(order).WillOnce(Return(false));
    EXPECT_CALL(host, VarnelInitStateMgr_FinishInit(loaded, true, true)).InSequence(order).WillOnce(Return(true));

    bool heldByLoader = false;
    std::thread loader([&] { heldByLoader = center->getPermission(u"f2"_qs, alias); });
    queryBegan.wait();
    EXPECT_TRUE(center->getPermission(u"f1"_qs, alias));
    EXPECT_FALSE(center->getPermission(u"f2"_qs, alias));
    queryMayEnd.open();
    loader.join();
    EXPECT_TRUE(heldByLoader);
    EXPECT_TRUE(held(u"f2"_qs, alias));
}

TEST_F(PermissionsTest, LoadEndsForTheHostBeforeTheAnswersAreThere)
{
    startWith({permission(u"f1"_qs, hostsOwn)});
    const testing::Sequence order;
    EXPECT_CALL(host, VarnelInitStateMgr_IsInited(loaded)).InSequence(order).WillOnce(Return(false));
    EXPECT_CALL(host, VarnelInitStateMgr_StartInit(loaded)).InSequence(order).WillOnce(Return(true));
    EXPECT_CALL(host, CBusinessDataBase_GetLoginAccount()).InSequence(order).WillOnce(Return(start.loginAccount));
    EXPECT_CALL(host, VarnelUtils_QueryDatasFromServer(_, _, _, _, _))
        .InSequence(order)
        .WillOnce(Return(QList<QVariantMap>{permission(u"f2"_qs, hostsOwn)}));
    EXPECT_CALL(host, VarnelInitStateMgr_FinishInit(loaded, true, true)).InSequence(order).WillOnce([this] {
        std::thread other([this] {
            EXPECT_TRUE(center->getPermission(u"f1"_qs, alias));
            EXPECT_FALSE(center->getPermission(u"f2"_qs, alias));
        });
        other.join(); // no lock is held here
        return true;
    });
    EXPECT_CALL(host, VarnelInitStateMgr_IsInited(loaded)).Times(2).InSequence(order).WillRepeatedly(Return(true));
    EXPECT_TRUE(center->getPermission(u"f2"_qs, alias));
}

TEST_F(PermissionsTest, AreSafeToAskFromSeveralThreadsWhileTheyAreLoadedAgain)
{
    constexpr int rounds = 200;
    startWith({permission(u"f1"_qs, hostsOwn)});
    EXPECT_CALL(host, VarnelInitStateMgr_IsInited(loaded)).WillRepeatedly(Return(false));
    EXPECT_CALL(host, VarnelInitStateMgr_StartInit(loaded)).WillRepeatedly(Return(true));
    EXPECT_CALL(host, CBusinessDataBase_GetLoginAccount()).WillRepeatedly(Return(start.loginAccount));
    EXPECT_CALL(host, VarnelUtils_QueryDatasFromServer(_, _, _, _, _)).WillRepeatedly([] {
        return QList<QVariantMap>{permission(u"f2"_qs, hostsOwn)};
    });
    EXPECT_CALL(host, VarnelInitStateMgr_FinishInit(loaded, true, true)).WillRepeatedly(Return(true));
    const auto ask = [this] {
        for (int i = 0; i < rounds; ++i) {
            EXPECT_TRUE(center->getPermission(u"f1"_qs, alias));
            EXPECT_TRUE(center->getPermission(u"f2"_qs, alias));
            EXPECT_FALSE(center->getPermission(u"f3"_qs, alias));
        }
    };
    std::thread one(ask);
    std::thread other(ask);
    ask();
    one.join();
    other.join();
}

} // namespace
