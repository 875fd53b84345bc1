// The mock itself: calls, starts and messages.

#include "Algo_Fields.h"
#include "Algo_Values.h"
#include "BusinessDataInterface.h"
#include "CBusinessDataBase.h"
#include "CPackMessageCommon.h"
#include "CUnPackMessageCommon.h"
#include "HostTest.h"
#include "Orlo_Keys.h"
#include "QvCore.h"
#include "QvPresenterClass.h"
#include "Tessar_Fields.h"
#include "VarnelBusinessDataInterface.h"
#include "VarnelInitStateMgr.h"
#include "VarnelUtils.h"
#include "Varnel_MsgType.h"

#include <gtest/gtest-spi.h>
#include <vector>

using testing::DoAll;
using testing::Return;
using testing::SetArgReferee;

namespace {

/// Takes the place of the library's message center.
class Presenter : public QvPresenterClass {
public:
    Presenter() : QvPresenterClass(QStringLiteral("presenter"), nullptr, IMessageInterface::WebThreadType) {}
};

const std::vector<int> subscriptions{0x300A0, 0x30003, 0x30005, 0x30004, 0x30006, 0x31002, 0x30001};

/// Makes the calls that expectPermissionLoad() expects with a login.
QList<QVariantMap> loadPermissions(QvPresenterClass &presenter)
{
    const QString key = QStringLiteral("SnbBindInit");
    if (!VarnelInitStateMgr::instance()->StartInit(key))
        return {};
    const QVariantMap conditions{
        {Tessar_Fields::UserAccount::userID, CBusinessDataBase::GetInstance()->GetLoginAccount()},
        {Algo_Fields::VarnelStrategy::supportType, Algo_Values::SupprotType::KFZ_SNB}};
    QString error;
    const QList<QVariantMap> records = VarnelUtils::QueryDatasFromServer(
        &presenter, Varnel_MsgType::QueryAlgoPermissionsByConditionRequest, conditions, BlockingQueryDataMode, error);
    VarnelInitStateMgr::instance()->FinishInit(key, error.isEmpty(), true);
    return records;
}

/// Makes the calls that expectStart() expects.
void start(QvPresenterClass &presenter, const std::vector<int> &eventIds = subscriptions)
{
    VarnelUtils::GetCurrentShowType();
    CBusinessDataBase::GetInstance()->GetLoginAccount();
    const int pid = presenter.pluginPid();
    for (const int id : eventIds)
        presenter.SubEvent(pid, id, 1);
    presenter.SubEvent(
        pid, VarnelBusinessDataInterface::GetOrloEventMsgIdByStr(Orlo_Keys::EventMsgName::VELOX_TRANS_MSG_OUT), 1);
    loadPermissions(presenter);
}

CMessageCommon *newRequest(CPackMessageCommon &body)
{
    auto *request = new CMessageCommon;
    request->SetType(QStringLiteral("request"));
    request->SetMsg(body.GetPackedMsg(0));
    request->SetSrcid(7);
    return request;
}

QString token()
{
    return QvCore::instance()->getCurrentToken();
}

} // namespace

class HostMockTest : public HostTest {};

TEST_F(HostMockTest, ExpectedCallReturnsItsAnswer)
{
    EXPECT_CALL(host, QvCore_getCurrentToken()).WillOnce(Return(QStringLiteral("令牌")));
    EXPECT_EQ(token(), QStringLiteral("令牌"));
}

TEST_F(HostMockTest, UnexpectedCallFailsTheTest)
{
    EXPECT_NONFATAL_FAILURE(token(), "QvCore_getCurrentToken");
}

TEST_F(HostMockTest, UnexpectedCallOnAnotherThreadFailsTheTest)
{
    BusThread thread;
    EXPECT_NONFATAL_FAILURE_ON_ALL_THREADS(thread.run([] { token(); }), "QvCore_getCurrentToken");
}

TEST_F(HostMockTest, MissingCallFailsTheTest)
{
    EXPECT_CALL(host, QvCore_getCurrentToken());
    EXPECT_NONFATAL_FAILURE(testing::Mock::VerifyAndClearExpectations(&host), "QvCore_getCurrentToken");
}

TEST_F(HostMockTest, OutParametersReachTheCaller)
{
    const QVariantMap keys{{QStringLiteral("k"), 1}};
    EXPECT_CALL(host,
                BusinessDataInterface_GetExecutionListByCustomKey(Identical(keys), testing::Eq(0), 3, 4, QStringList()))
        .WillOnce(DoAll(SetArgReferee<1>(99), Return(QList<QVariantMap>{keys})));
    int total = 0;
    EXPECT_EQ(BusinessDataInterface::GetExecutionListByCustomKey(keys, total, 3, 4, {}).size(), 1);
    EXPECT_EQ(total, 99);
}

TEST(HostMockDeathTest, CallWithoutMockAborts)
{
    EXPECT_DEATH(token(), "host call without a mock.*getCurrentToken");
}

TEST(HostMockDeathTest, SecondMockAborts)
{
    const testing::StrictMock<HostMock> first;
    EXPECT_DEATH(HostMock(), "a second one");
}

TEST_F(HostMockTest, FirstStartIsAccepted)
{
    expectStart();
    Presenter presenter;
    start(presenter);
}

TEST_F(HostMockTest, StartWithSubscriptionsInAnotherOrderFails)
{
    expectStart();
    Presenter presenter;
    testing::TestPartResultArray failures;
    {
        const testing::ScopedFakeTestPartResultReporter interceptor(&failures);
        start(presenter, {0x30003, 0x300A0, 0x30005, 0x30004, 0x30006, 0x31002, 0x30001});
        testing::Mock::VerifyAndClearExpectations(&host);
    }
    EXPECT_GT(failures.size(), 0);
}

TEST_F(HostMockTest, StartVariationsReachTheCaller)
{
    HostStart nobody;
    nobody.loginAccount.clear();
    nobody.dataDispatchers = 0;
    expectStart(nobody);
    EXPECT_EQ(CBusinessDataBase::GetInstance()->GetLoginAccount(), QString());
    EXPECT_NONFATAL_FAILURE(VarnelUtils::GetCurrentShowType(), "GetCurrentShowType");
    testing::TestPartResultArray missingSubscriptions;
    const testing::ScopedFakeTestPartResultReporter interceptor(&missingSubscriptions);
    testing::Mock::VerifyAndClearExpectations(&host);
}

TEST_F(HostMockTest, LoadOfPermissionsAnswersAndFailsAsConfigured)
{
    Presenter presenter;
    HostStart load;
    load.permissions = {{{QStringLiteral("k"), 1}}};
    expectPermissionLoad(load);
    EXPECT_EQ(loadPermissions(presenter), load.permissions);

    load.permissionError = QStringLiteral("系统忙");
    expectPermissionLoad(load);
    loadPermissions(presenter);

    load.permissionLoadIsFree = false;
    expectPermissionLoad(load);
    EXPECT_TRUE(loadPermissions(presenter).isEmpty());
}

TEST_F(HostMockTest, LoadOfPermissionsForAnotherUserFails)
{
    Presenter presenter;
    HostStart load;
    expectPermissionLoad(load);
    EXPECT_CALL(host, CBusinessDataBase_GetLoginAccount()).WillRepeatedly(Return(QStringLiteral("somebody else")));
    testing::TestPartResultArray failures;
    {
        const testing::ScopedFakeTestPartResultReporter interceptor(&failures);
        loadPermissions(presenter);
        testing::Mock::VerifyAndClearExpectations(&host);
    }
    EXPECT_GT(failures.size(), 0);
}

TEST_F(HostMockTest, PackedFieldsKeepTheirOrderAndTypes)
{
    const QString id = nextClientMessageId();
    CPackMessageCommon body;
    EXPECT_EQ(body.GetValue(Tessar_Fields::System::clientMsgID), id);
    EXPECT_NE(nextClientMessageId(), id);
    body.AddVaule(QStringLiteral("z"), 10);
    body.AddVaule(QStringLiteral("a"), QStringLiteral("10"));
    EXPECT_EQ(body.GetValue(QStringLiteral("z")), 10);
    EXPECT_FALSE(body.GetValue(QStringLiteral("absent")).isValid());

    MessageRecord sent;
    EXPECT_CALL(host, QvPresenterClass_sendRequest_Async).WillOnce(DoAll(testing::SaveArg<0>(&sent), Return(5)));
    EXPECT_EQ(Presenter().sendRequest_Async(newRequest(body)), 5);
    const MessageFields expected{{QStringLiteral("z"), 10}, {QStringLiteral("a"), QStringLiteral("10")}};
    EXPECT_THAT(sent, IsMessage(QStringLiteral("request"), 7, expected));
    EXPECT_EQ(sent.clientMsgId, id);

    const MessageFields reordered{{QStringLiteral("a"), QStringLiteral("10")}, {QStringLiteral("z"), 10}};
    const MessageFields retyped{{QStringLiteral("z"), QStringLiteral("10")}, {QStringLiteral("a"), 10}};
    EXPECT_THAT(sent, testing::Not(IsMessage(QStringLiteral("request"), 7, reordered)));
    EXPECT_THAT(sent, testing::Not(IsMessage(QStringLiteral("request"), 7, retyped)));
}

TEST_F(HostMockTest, MessagesHandedOverAreDeletedOnce)
{
    const int alive = messagesAlive();
    const int deleted = messagesDeleted();
    Presenter presenter;
    CPackMessageCommon body;
    EXPECT_CALL(host, QvPresenterClass_sendRequest_Async).WillOnce(Return(0));
    EXPECT_CALL(host, QvPresenterClass_sendRequest_Sync).WillOnce(DoAll(SetArgReferee<1>(QVariantList{1}), Return(0)));
    EXPECT_CALL(host, QvPresenterClass_PutEvent(7, IsMessage(QVariant(9), 0, MessageFields())));
    presenter.sendRequest_Async(newRequest(body));
    QVariant reply;
    presenter.sendRequest_Sync(newRequest(body), reply);
    EXPECT_EQ(reply, QVariantList{1});
    auto *event = new CEventMessageCommon;
    event->SetType(9);
    EXPECT_EQ(messagesAlive(), alive + 1);
    presenter.PutEvent(7, event);
    EXPECT_EQ(messagesAlive(), alive);
    EXPECT_EQ(messagesDeleted(), deleted + 3);
}

TEST_F(HostMockTest, MessageHandedOverTwiceAborts)
{
    CPackMessageCommon body;
    EXPECT_CALL(host, QvPresenterClass_sendRequest_Async).WillRepeatedly(Return(0));
    EXPECT_DEATH(
        {
            Presenter presenter;
            CMessageCommon *request = newRequest(body);
            presenter.sendRequest_Async(request);
            presenter.sendRequest_Async(request);
        },
        "handed over that is not alive");
}

TEST_F(HostMockTest, UnpackerReadsTheFirstRowOfWhatTheHostPacked)
{
    const QVariantMap first{{QStringLiteral("a"), 1}};
    CUnPackMessageCommon body;
    EXPECT_TRUE(body.SetUnPackMsg(packedRows({first, {{QStringLiteral("b"), 2}}}), false));
    EXPECT_TRUE(identical(body.GetRowValue(), first));
    EXPECT_TRUE(body.SetUnPackMsg(packedRows({}), false));
    EXPECT_TRUE(body.GetRowValue().isEmpty());
    EXPECT_FALSE(body.SetUnPackMsg(first, false));
    EXPECT_TRUE(body.GetRowValue().isEmpty());
    EXPECT_NONFATAL_FAILURE(body.SetUnPackMsg(packedRow(first), true), "SetUnPackMsg");
}

TEST(IdenticalTest, ComparesTypesAlsoInsideListsAndMaps)
{
    const QString key = QStringLiteral("k");
    const QVariant number(10);
    const QVariant text(QStringLiteral("10"));
    EXPECT_EQ(number, text) << "this conversion is why identical() exists";
    EXPECT_FALSE(identical(number, text));
    EXPECT_FALSE(identical(QVariantList{number}, QVariantList{text}));
    EXPECT_FALSE(identical(QVariant(QVariantMap{{key, number}}), QVariant(QVariantMap{{key, text}})));
    EXPECT_TRUE(identical(QVariant(QVariantMap{{key, number}}), QVariant(QVariantMap{{key, number}})));
    const auto maps = [&](const QVariant &value) { return QVariant::fromValue(QList<QVariantMap>{{{key, value}}}); };
    EXPECT_TRUE(identical(maps(number), maps(number)));
    EXPECT_FALSE(identical(maps(number), maps(text)));
    EXPECT_FALSE(identical(QVariantList{number}, QVariantList{number, number}));
}
