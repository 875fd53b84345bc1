#include "bridge/DataThread.h"
#include "bridge/TradeThread.h"
#include "msgcenter/WebMsgCenter.h"

#include "HostBus.h"
#include "HostMock.h"
#include "HostQuotes.h"
#include "RecordingView.h"
#include "Replies.h"
#include "common/HeaderTexts.h"

#include "Orlo_Keys.h"
#include "Tessar_Fields.h"
#include "Varnel_Fields.h"

#include <QSet>

using testing::_;
using testing::Return;

namespace {

constexpr int strategyOutEventId = 77;

/// Makes every call of the protocol and delivers every event of the host, which agrees to everything. Tests only which
/// events reach pages; their content is tested elsewhere.
class ProtocolTest : public testing::Test {
protected:
    ProtocolTest()
    {
        ON_CALL(host, VarnelBusinessDataInterface_GetAccountInfoListFromFund(_, _))
            .WillByDefault(Return(QList<tagUserAccountInfo>{{u"f1"_qs, u"name"_qs, u"t1"_qs}}));
        ON_CALL(host, VarnelBusinessDataInterface_GetOrloEventMsgIdByStr(Orlo_Keys::EventMsgName::VELOX_TRANS_MSG_OUT))
            .WillByDefault(Return(strategyOutEventId));
        data = new DataThread(&view);
        trade = new TradeThread(&view);
        center = WebMsgCenter::instance();
        center->reg(&view);
    }

    ~ProtocolTest() override { center->unReg(&view); }

    /// Routes the call as a host does.
    bool call(const QString &method)
    {
        const QVariantList enoughForAll{u"u1"_qs, u"[]"_qs, u"{}"_qs, u"[]"_qs, 4, 5, 6, 7, 8};
        if (method.startsWith(u"Sub_subscribe_"_qs)) {
            center->subscribe(&view, u"u1"_qs, {u"S"_qs});
            return true;
        }
        if (method.startsWith(u"UnSub_subscribe_"_qs)) {
            center->unsubscribe(&view, u"u1"_qs, {});
            return true;
        }
        if (method.startsWith(u"UnSub_subscribeAll_"_qs)) {
            center->unsubscribeAll(&view, u"u1"_qs);
            return true;
        }
        if (method.startsWith(u"Vlx_"_qs)) {
            QVariantList arguments = enoughForAll;
            if (method == u"Vlx_subStrategyMsg_REQ"_qs)
                arguments = {u"u1"_qs, u"m1"_qs, u"1"_qs};
            return QMetaObject::invokeMethod(center, method.toLatin1().constData(), Q_ARG(QVariantList, arguments),
                                             Q_ARG(VarnelCefView *, &view));
        }
        return (method.startsWith(u"Trade_"_qs) ? trade->onInvokeMethod(0, 0, method, enoughForAll)
                                                : data->onInvokeMethod(0, 0, method, enoughForAll));
    }

    void strategyEvent(const QString &subEvent)
    {
        using namespace Varnel_Fields;
        HostBus::deliverEvent(QString(), strategyOutEventId,
                              packedRow({{VeloxFields::msgSubEventType, subEvent},
                                         {VeloxFields::strategyCustomMsgID, u"m1"_qs},
                                         {u"panelPtr"_qs, QVariant::fromValue(static_cast<VarnelCefView *>(&view))}}));
    }

    testing::NiceMock<HostMock> host;
    RecordingView view;
    DataThread *data = nullptr;
    TradeThread *trade = nullptr;
    WebMsgCenter *center = nullptr;
};

TEST_F(ProtocolTest, EveryReplyAndPushIsSentAndNoReservedOne)
{
    const QString candleRequest = nextClientMessageId();
    for (const QString &method : textsOfTheHeader(u"Method"_qs)) {
        if (method == u"UnSub_subscribeAll_REQ"_qs)
            emitTick(u"S"_qs, {}); // while it is still subscribed
        EXPECT_TRUE(call(method)) << qPrintable(method);
    }
    HostBus::deliverQuotation(QString(), u"KLineResponse"_qs,
                              QVariantList{QVariantMap{{Tessar_Fields::System::clientMsgID, candleRequest}}});
    for (const int event : {0x300A0, 0x30003, 0x30004, 0x30005, 0x30006, 0x31002, 0x30001})
        HostBus::deliverEvent(QString(), event, packedRow({}));
    using namespace Varnel_Fields::VeloxValues;
    for (const QString &subEvent : {MSEventStartStrategyReq, MSEventStopStrategyReq, MSEventQueryStrategyStatusReq,
                                    MSEventStrategyCustomMsg, MSEventSubStrategyMsg, MSEventStartStrategyRsp,
                                    MSEventStopStrategyRsp, MSEventQueryStrategyStatusRsp, MSEventStrategyStatusUpdate})
        strategyEvent(subEvent);
    ASSERT_TRUE(view.waitForEvent(u"on_entrustUpdate"_qs));
    ASSERT_TRUE(view.waitForEvent(u"on_executionUpdate"_qs));

    QSet<QString> sent;
    for (const ViewEvent &event : view.eventsAfterDraining())
        sent.insert(event.name);
    const QStringList expected = textsOfTheHeader(u"ReplyEvent"_qs) + textsOfTheHeader(u"Push"_qs);
    EXPECT_EQ(sent, QSet<QString>(expected.cbegin(), expected.cend()));
}

TEST_F(ProtocolTest, ReservedNamesHaveNoHandler)
{
    const QStringList reserved = textsOfTheHeader(u"Reserved"_qs);
    EXPECT_EQ(reserved.size(), 8);
    const QVariantList arguments{u"u1"_qs, u"a"_qs, u"b"_qs, u"c"_qs};
    for (const QString &name : reserved) {
        EXPECT_FALSE(data->onInvokeMethod(0, 0, name, arguments)) << qPrintable(name);
        EXPECT_FALSE(trade->onInvokeMethod(0, 0, name, arguments)) << qPrintable(name);
        EXPECT_FALSE(QMetaObject::invokeMethod(center, name.toLatin1().constData(), Q_ARG(QVariantList, arguments),
                                               Q_ARG(VarnelCefView *, &view)))
            << qPrintable(name);
    }
    EXPECT_TRUE(view.eventsAfterDraining().isEmpty());
}

} // namespace
