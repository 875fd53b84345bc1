#pragma once

#include "EventsTest.h"

#include "Varnel_Fields.h"

/// Base of the tests of strategy control. The host tells the ids of the strategy platform's two events as often as it
/// is asked. No view is registered yet.
class StrategiesTest : public CenterTest {
protected:
    static constexpr int inEventId = 0x5B5B5;

    StrategiesTest()
    {
        using namespace Orlo_Keys::EventMsgName;
        EXPECT_CALL(host, VarnelBusinessDataInterface_GetOrloEventMsgIdByStr(VELOX_TRANS_MSG_IN))
            .Times(testing::AnyNumber())
            .WillRepeatedly(testing::Return(inEventId));
        EXPECT_CALL(host, VarnelBusinessDataInterface_GetOrloEventMsgIdByStr(VELOX_TRANS_MSG_OUT))
            .Times(testing::AnyNumber())
            .WillRepeatedly(testing::Return(start.strategyOutEventId));
    }

    /// A page's call, as a host makes it by name.
    void call(const char *method, const QVariantList &arguments, VarnelCefView *view)
    {
        EXPECT_TRUE(
            QMetaObject::invokeMethod(center, method, Q_ARG(QVariantList, arguments), Q_ARG(VarnelCefView *, view)));
    }

    /// The fields of a request: its own, between those that every request has.
    static MessageFields request(const QString &subEvent, const MessageFields &own, VarnelCefView *view,
                                 const QString &uuid)
    {
        MessageFields fields{{Varnel_Fields::VeloxFields::msgSubEventType, subEvent},
                             {Tessar_Fields::System::msgType, int(inEventId)}};
        fields += own;
        fields.append({u"panelPtr"_qs, QVariant::fromValue(view)});
        fields.append({u"uuid"_qs, uuid});
        return fields;
    }

    void expectRequest(const MessageFields &fields)
    {
        EXPECT_CALL(host, QvPresenterClass_PutEvent(start.pid, IsMessage(QVariant(int(inEventId)), start.pid, fields)))
            .RetiresOnSaturation();
    }

    /// An event of the strategy platform, on the calling thread.
    void answer(const QString &subEvent, QVariantMap row) const
    {
        row.insert(Varnel_Fields::VeloxFields::msgSubEventType, subEvent);
        deliver(start.strategyOutEventId, row);
    }
};
