// The starter host does nothing yet, but what it answers is sound.

#include "dataservice/DataProcess.h"
#include "msgcenter/WebMsgCenter.h"
#include "trade/TradeProcess.h"

#include "CBusinessDataBase.h"
#include "CEventMessageCommon.h"
#include "CMessageCommon.h"
#include "CPackMessageCommon.h"
#include "CUnPackMessageCommon.h"
#include "CommonQuotaHandler.h"
#include "OrderRequestList.h"
#include "SearchConstants.h"
#include "Tessar_Fields.h"
#include "VarnelBusinessDataInterface.h"
#include "VarnelCefView.h"
#include "VarnelInitStateMgr.h"
#include "VarnelTradeLogic.h"

#include <gmock/gmock.h>

namespace {

/// A message that tells when it is deleted.
template <typename Message>
class Counted : public Message {
public:
    explicit Counted(int &deleted) : m_deleted(deleted) {}
    ~Counted() override { ++m_deleted; }

private:
    int &m_deleted;
};

} // namespace

TEST(StarterHost, RefusesOrdersWithAReason)
{
    QVariant response;
    QList<VarnelLogic::ResponseInfo> errors;
    const OrderRequestList orders(QStringLiteral("account"), QStringLiteral("tag"));
    EXPECT_NE(VarnelTradeLogic::instance()->orders(orders, response, 319, errors, true), 0);
    ASSERT_EQ(errors.size(), 1);
    EXPECT_FALSE(errors.first().message.isEmpty());
}

TEST(StarterHost, RefusesEachCancel)
{
    const QString answer =
        TradeProcess::instance()->processCancelOrders(QStringLiteral("u"), {QStringLiteral("1"), QStringLiteral("2")});
    EXPECT_EQ(answer.toStdString(),
              R"({"code":"0","msg":"","resultData":[)"
              R"({"code":"-1","msg":"this terminal has no such order","orderId":"1"},)"
              R"({"code":"-1","msg":"this terminal has no such order","orderId":"2"}],"uuid":"u"})");
}

TEST(StarterHost, KnowsNoAccounts)
{
    const QString answer = DataProcess::instance()->processAsset(QStringLiteral("u"), QStringLiteral("F1"));
    EXPECT_EQ(answer.toStdString(), R"({"code":"0","msg":"","resultData":[],"uuid":"u"})");
}

TEST(StarterHost, AcceptsSubscriptionsAndHasNoQuotes)
{
    CommonQuotaHandler *const quotes = CommonQuotaHandler::instance();
    EXPECT_EQ(quotes->SubscribeQuota({QStringLiteral("609001.SH")}, true, 0), 0);
    EXPECT_TRUE(quotes->GetQuotaSnapshot(QStringLiteral("609001.SH"), 0).isEmpty());
}

TEST(StarterHost, LetsAFailedLoadBeStartedAgainAndASuccessfulOneNot)
{
    VarnelInitStateMgr *const states = VarnelInitStateMgr::instance();
    const QString key = QStringLiteral("key");
    EXPECT_FALSE(states->IsInited(key));
    EXPECT_TRUE(states->StartInit(key));
    EXPECT_FALSE(states->StartInit(key));
    EXPECT_TRUE(states->FinishInit(key, false, true));
    EXPECT_FALSE(states->IsInited(key));
    EXPECT_TRUE(states->StartInit(key));
    EXPECT_TRUE(states->FinishInit(key, true, true));
    EXPECT_TRUE(states->IsInited(key));
    EXPECT_FALSE(states->StartInit(key));
    EXPECT_FALSE(states->FinishInit(key, true, true));
}

TEST(StarterHost, GivesNoPermission)
{
    EXPECT_FALSE(WebMsgCenter::instance()->getPermission(QStringLiteral("F1"), QStringLiteral("type")));
}

TEST(StarterHost, TakesMessagesOverAndSendsNone)
{
    int deleted = 0;
    WebMsgCenter *const presenter = WebMsgCenter::instance();
    QVariant reply;
    EXPECT_NE(presenter->sendRequest_Async(new Counted<CMessageCommon>(deleted)), 0);
    EXPECT_NE(presenter->sendRequest_Sync(new Counted<CMessageCommon>(deleted), reply), 0);
    presenter->PutEvent(presenter->pluginPid(), new Counted<CEventMessageCommon>(deleted));
    EXPECT_EQ(deleted, 3);
}

TEST(StarterHost, UnpacksWhatItPacks)
{
    CPackMessageCommon pack;
    const QVariantMap map{{QStringLiteral("inner"), 1}};
    pack.AddVaule(QStringLiteral("text"), QStringLiteral("first"));
    pack.AddVaule(QStringLiteral("list"), QVariantList{1, 2});
    pack.AddVaule(QStringLiteral("map"), map);
    pack.AddVaule(QStringLiteral("text"), QStringLiteral("last"));
    EXPECT_EQ(pack.GetValue(QStringLiteral("text")), QStringLiteral("last"));
    EXPECT_FALSE(pack.GetValue(QStringLiteral("nothing")).isValid());

    CUnPackMessageCommon unpack;
    EXPECT_TRUE(unpack.SetUnPackMsg(pack.GetPackedMsg(0), false));
    const QVariantMap expected{
        {Tessar_Fields::System::clientMsgID, pack.GetValue(Tessar_Fields::System::clientMsgID)},
        {QStringLiteral("text"), QStringLiteral("last")},
        {QStringLiteral("list"), QVariantList{1, 2}},
        {QStringLiteral("map"), map},
    };
    EXPECT_EQ(unpack.GetRowValue(), expected);

    EXPECT_FALSE(unpack.SetUnPackMsg(QStringLiteral("no message"), false));
    EXPECT_TRUE(unpack.GetRowValue().isEmpty());
}

TEST(StarterHost, GivesEachMessageAndEachOrderAnIdentifierOfItsOwn)
{
    const auto messageId = [] { return CPackMessageCommon().GetValue(Tessar_Fields::System::clientMsgID).toString(); };
    const auto orderId = [] { return CBusinessDataBase::GetInstance()->getClientOrderID(); };
    EXPECT_NE(messageId(), messageId());
    EXPECT_NE(orderId(), orderId());
}

TEST(StarterHost, SeparatesSearchEntries)
{
    EXPECT_FALSE(Constants::SymbolSearch_Split.isEmpty());
}

TEST(StarterHost, TellsThatABroadcastReachedNoPage)
{
    VarnelCefView view;
    EXPECT_FALSE(view.broadcastEvent(QCefEvent(QStringLiteral("event"))));
}
