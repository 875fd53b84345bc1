#pragma once

#include "CenterTest.h"

#include "HostAnswers.h"

#include "Orlo_Keys.h"
#include "Tessar_Fields.h"

/// The host's ids of its trading events.
enum TradingEvent {
    assetEvent = 0x300A0,
    orderEvent = 0x30003,
    changedOrderEvent = 0x30005,
    executionEvent = 0x30004,
    strategyExecutionEvent = 0x30006,
    positionEvent = 0x31002,
    ordersLoadedEvent = 0x30001
};

/// Base of the tests of the bus's events; one view is registered.
class EventsTest : public CenterTest {
protected:
    EventsTest() { center->reg(&view); }

    /// Expects the id of strategy events to be asked for so often, and no other event's.
    void expectStrategyIdAsked(int times)
    {
        EXPECT_CALL(host,
                    VarnelBusinessDataInterface_GetOrloEventMsgIdByStr(Orlo_Keys::EventMsgName::VELOX_TRANS_MSG_OUT))
            .Times(times)
            .WillRepeatedly(testing::Return(start.strategyOutEventId))
            .RetiresOnSaturation();
    }

    QString intakeLine(int views, int type) const { return logText("WebMsgCenter::ProcEventMsg", views, type); }

    RecordingView view;
};
