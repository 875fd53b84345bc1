#include "HostTest.h"

#include "Algo_Fields.h"
#include "Algo_Values.h"
#include "Orlo_Keys.h"
#include "RecordingView.h"
#include "Tessar_Fields.h"
#include "Varnel_MsgType.h"

using testing::_;
using testing::AtLeast;
using testing::Return;
using testing::Sequence;

namespace {

const QString permissionKey = QStringLiteral("SnbBindInit");

} // namespace

HostTest::HostTest() : m_messagesBefore(messagesAlive())
{
    RecordingView::clearAllViews();
}

HostTest::~HostTest()
{
    EXPECT_EQ(messagesAlive(), m_messagesBefore) << "messages were created and never handed to the bus";
}

void HostTest::expectStart(const HostStart &start)
{
    constexpr int firstEventIds[] = {0x300A0, 0x30003, 0x30005, 0x30004, 0x30006, 0x31002, 0x30001};

    for (int i = 0; i < start.dataDispatchers; ++i)
        EXPECT_CALL(host, VarnelUtils_GetCurrentShowType()).WillOnce(Return(start.showType)).RetiresOnSaturation();
    EXPECT_CALL(host, QvPresenterClass_pluginPid()).Times(AtLeast(1)).WillRepeatedly(Return(start.pid));

    Sequence order;
    EXPECT_CALL(host, CBusinessDataBase_GetLoginAccount())
        .InSequence(order)
        .WillOnce(Return(start.loginAccount))
        .RetiresOnSaturation();
    for (const int id : firstEventIds)
        EXPECT_CALL(host, QvPresenterClass_SubEvent(start.pid, Identical(QVariant(id)), 1)).InSequence(order);

    Sequence strategyEventIsKnown;
    EXPECT_CALL(host, VarnelBusinessDataInterface_GetOrloEventMsgIdByStr(Orlo_Keys::EventMsgName::VELOX_TRANS_MSG_OUT))
        .InSequence(strategyEventIsKnown)
        .WillOnce(Return(start.strategyOutEventId))
        .RetiresOnSaturation();
    EXPECT_CALL(host, QvPresenterClass_SubEvent(start.pid, Identical(QVariant(start.strategyOutEventId)), 1))
        .InSequence(order, strategyEventIsKnown);
    expectPermissionLoad(start, order);
}

void HostTest::expectPermissionLoad(const HostStart &start, const Sequence &order)
{
    EXPECT_CALL(host, VarnelInitStateMgr_StartInit(permissionKey))
        .InSequence(order)
        .WillOnce(Return(start.permissionLoadIsFree))
        .RetiresOnSaturation();
    if (!start.permissionLoadIsFree)
        return;
    EXPECT_CALL(host, CBusinessDataBase_GetLoginAccount())
        .InSequence(order)
        .WillOnce(Return(start.loginAccount))
        .RetiresOnSaturation();
    if (!start.loginAccount.isEmpty()) {
        const QVariantMap conditions{
            {Tessar_Fields::UserAccount::userID, start.loginAccount},
            {Algo_Fields::VarnelStrategy::supportType, Algo_Values::SupprotType::KFZ_SNB},
        };
        EXPECT_CALL(host, VarnelUtils_QueryDatasFromServer(_, Varnel_MsgType::QueryAlgoPermissionsByConditionRequest,
                                                           Identical(conditions), BlockingQueryDataMode,
                                                           testing::Eq(QString())))
            .InSequence(order)
            .WillOnce([start](const QvPresenterClass *presenter, const QString &, const QVariantMap &, QueryDataMode,
                              QString &error) {
                EXPECT_EQ(presenter, HostBus::presenter().presenter);
                error = start.permissionError;
                return start.permissions;
            })
            .RetiresOnSaturation();
    }
    const bool succeeds = !start.loginAccount.isEmpty() && start.permissionError.isEmpty();
    EXPECT_CALL(host, VarnelInitStateMgr_FinishInit(permissionKey, succeeds, true))
        .InSequence(order)
        .WillOnce(Return(true))
        .RetiresOnSaturation();
}
